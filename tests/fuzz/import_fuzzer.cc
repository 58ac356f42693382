// The readers of `cubekit import` on any bytes: the first byte chooses the format of the rest. The translator
// must accept a table that results; a refusal must give a reason.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <sstream>
#include <string>
#include <string_view>

#include "drc/check_design.h"
#include "kit/import/import.h"
#include "reader/reader.h"
#include "report/console.h"

namespace {

struct Silence : cubenet::HostConsole {
  void print(std::string_view) override {}
};

void demand_table(std::string text) {
  std::FILE *file = ::fmemopen(text.data(), text.size(), "rb");
  cubenet::CubeTable cubes;
  const auto design = cubenet::read_tt2(file, "table", cubes);
  std::fclose(file);
  if (design == nullptr || cubenet::check_design(*design, cubes) != 0) std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  using namespace cubekit;
  static Silence silence;
  cubenet::set_host_console(&silence);
  if (size == 0) return 0;
  const std::string_view text(reinterpret_cast<const char *>(data) + 1, size - 1);
  ImportOptions options{.path = "source", .flatten = data[0] / 3U % 8U, .case_sensitive = false};
  Draft draft;
  draft.files = {options.path};
  Remark fault;
  const bool is_read = data[0] % 3 == 0   ? read_pla(text, draft, fault)
                       : data[0] % 3 == 1 ? read_blif(text, options, draft, fault)
                                          : read_yosys_json(text, draft, fault);
  if (!is_read || !finish_draft(options, draft, fault)) {
    if (fault.text.empty()) std::abort();
    return 0;
  }
  const TableLayout layout = lay_out_table(draft);
  if (layout.size > (std::size_t{1} << 20)) return 0;
  std::ostringstream stream;
  write_table(stream, draft, layout);
  demand_table(stream.str());
  return 0;
}
