// Runs the reader with its messages caught: they are of interest only when the file can't be read.
#include "kit/read_design.h"

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "frame/console.h"
#include "frame/messages.h"
#include "model/run_settings.h"
#include "reader/reader.h"

namespace cubekit {

namespace {

struct CaughtConsole : cubenet::HostConsole {
  std::string text;
  void print(std::string_view more) override { text += more; }
};

} // namespace

std::unique_ptr<cubenet::Design> read_design(const std::string &path, bool case_sensitive, cubenet::CubeTable &cubes,
                                             std::string &messages) {
  std::FILE *file = std::fopen(path.c_str(), "rb");
  if (file == nullptr) {
    messages = path + ": " + std::strerror(errno) + '\n';
    return nullptr;
  }
  cubenet::run_settings.case_sensitive = case_sensitive;
  CaughtConsole console;
  cubenet::HostConsole *before = cubenet::set_host_console(&console);
  std::unique_ptr<cubenet::Design> design = cubenet::read_tt2(file, path, cubes);
  cubenet::set_host_console(before);
  std::fclose(file);
  if (design == nullptr) messages = console.text;
  return design;
}

} // namespace cubekit
