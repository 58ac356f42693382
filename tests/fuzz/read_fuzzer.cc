// The reader alone on any bytes.
#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include "model/run_settings.h"
#include "reader/reader.h"
#include "report/console.h"
#include "report/messages.h"

namespace {

struct Silent final : cubenet::HostConsole {
  void print(std::string_view) override {}
};
Silent silent;

void require(bool holds) {
  if (!holds) std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  using namespace cubenet;
  set_host_console(&silent);
  start_messages("/no such directory/log");
  reset_run_settings();
  run_settings.case_sensitive = size % 2 == 1;
  std::FILE *file = fmemopen(const_cast<std::uint8_t *>(data), size, "r");
  require(file != nullptr);
  CubeTable cubes;
  const auto design = read_tt2(file, "in", cubes);
  std::fclose(file);
  stop_messages();
  if (design == nullptr) {
    require(cubes.rows == nullptr && cubes.NUM_CUBES == 0);
    return 0;
  }
  require(design->ILB.size() == cubes.inputs && design->OLB.size() == cubes.outputs && !design->pin_names.empty());
  for (std::size_t i = 0; i < cubes.NUM_CUBES; i++)
    for_each_output(cubes, cube(cubes, i), [&](std::size_t output) { require(output < cubes.outputs); });
  return 0;
}
