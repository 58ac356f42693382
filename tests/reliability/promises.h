// What every run promises, whatever its input: checked for one run of design "d" in the working directory.
#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "frame/run.h"
#include "kit/check/check.h"
#include "model/names.h"
#include "report/console.h"
#include "support/arguments.h"

namespace cubenet {

// Options that lead through different code; a run's number chooses one.
constexpr std::string_view kRunOptions[] = {
    "", "-and 2 -or 2", "-p Mirn5x -C", "-p 8 -V 1", "-and 12 -p 8", "-pla -V 2 -v", "-or 3 -p 5 -C",
};

struct PromiseConsole final : HostConsole {
  std::string text;
  void print(std::string_view more) override { text += more; }
};

inline std::string content_of(const std::string &path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

// Whether all lines of the log are in the console text, in order; a few lines go only to the console.
inline bool holds_lines(std::string_view console, std::string_view log) {
  while (!log.empty()) {
    const std::string_view line = log.substr(0, log.find('\n') + 1);
    if (console.empty() || line.empty()) return false;
    if (console.starts_with(line)) log.remove_prefix(line.size());
    console.remove_prefix(console.find('\n') + 1);
  }
  return true;
}

// A message is recognized by the number at the start of its line; names in it may contain any word.
inline bool tells_error(std::string_view console) {
  for (std::size_t at = 0; at < console.size();) {
    const std::string_view line = console.substr(at, console.find('\n', at) - at);
    at += line.size() + 1;
    const std::size_t number = line.find_first_not_of("0123456789");
    const std::string_view label = line.substr(std::min(number, line.size()));
    if (number == 5 && (label.starts_with(" ERROR: ") || label.starts_with(" SYSTEM ERROR: "))) return true;
  }
  return false;
}

inline bool repeats_a_port(std::string_view line) {
  std::set<std::string_view> ports;
  for (std::size_t at = 0; (at = line.find_first_not_of(" \t\r,", at)) != std::string_view::npos;) {
    const std::string_view word = line.substr(at, line.find_first_of(" \t\r,", at) - at);
    at += word.size();
    if (word.find('\'') != std::string_view::npos && !ports.insert(word.substr(0, word.find('\''))).second) return true;
  }
  return false;
}

// Macro statements are copied as they are: with characters in them that the netlists' syntax uses, or a port
// given twice, no reader can know what they mean.
inline bool has_doubtful_macros(std::string_view design) {
  constexpr std::string_view kPlain = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_#$' \t\r,";
  for (std::size_t at = 0; at < design.size();) {
    const std::string_view line = design.substr(at, design.find('\n', at) - at);
    at += line.size() + 1;
    const std::string upper = upper_case(line);
    const bool is_macro = upper.find("EXTERNAL") != std::string::npos || upper.find("INSTANCE") != std::string::npos;
    if (is_macro && (line.find_first_not_of(kPlain) != std::string_view::npos || repeats_a_port(line))) return true;
  }
  return false;
}

// Empty when all outputs are whole, well formed and consistent; else what is wrong.
inline std::string broken_output() {
  for (const char *name : {"d.ddf", "d.tvx", "d.nxf"})
    if (!std::filesystem::exists(name)) return std::string(name) + " is missing\n";
  if (std::filesystem::exists("d.par") && !content_of("d.par").ends_with("END\n")) return "d.par is cut off\n";
  if (has_doubtful_macros(content_of("d.tt2"))) return {};
  std::ostringstream found;
  const int status = cubekit::check_files("d", "", found, found);
  return status == 0 ? "" : found.str();
}

// Translates d.tt2. Empty when all promises are kept: exit status 0 or 2; success is reported exactly with
// status 0, and the outputs are then whole; a failed run leaves none (the disk is never full here); the log
// has no line that the console did not show.
inline std::string broken_promise(std::size_t options, std::string *said = nullptr) {
  for (const char *name : {"d.ddf", "d.tvx", "d.nxf", "d.par", "cubenet.log"}) std::filesystem::remove(name);
  PromiseConsole console;
  HostConsole *const before = set_host_console(&console);
  const std::string_view chosen = kRunOptions[options % std::size(kRunOptions)];
  Arguments arguments("cubenet " + std::string(chosen) + (chosen.empty() ? "" : " ") + "d");
  const int status = run_program(arguments.count(), arguments.pointers.data());
  set_host_console(before);
  if (said != nullptr) *said = console.text;

  std::string broken;
  if (status != 0 && status != 2) broken += "exit status " + std::to_string(status) + "\n";
  constexpr std::string_view kDone = "PLA reading and translation completed successfully \n";
  constexpr std::string_view kFailed = "PLA reading and translation completed with errors \n";
  if (!console.text.ends_with(status == 0 ? kDone : kFailed)) broken += "the last line belies the exit status\n";
  if (!holds_lines(console.text, content_of("cubenet.log"))) broken += "the console lacks what the log holds\n";
  if (status == 0 && tells_error(console.text)) broken += "an error was reported, yet the run succeeded\n";
  if (status == 0) return broken + broken_output();
  for (const char *name : {"d.ddf", "d.tvx", "d.nxf", "d.par"})
    if (std::filesystem::exists(name)) broken += std::string(name) + " was written by a failed run\n";
  return broken;
}

} // namespace cubenet
