// The reader's driver: classifies the lines of the file as statements, header lines and product terms, stores
// the terms, and completes the database. After an error, reading continues, but stops at the next product
// term.

#include <climits>

#include "model/run_settings.h"
#include "reader/cube_parser.h"
#include "reader/header_lines.h"
#include "reader/line_reader.h"
#include "reader/macros.h"
#include "reader/part_selection.h"
#include "reader/reader.h"
#include "reader/statements.h"
#include "reader/tokens.h"
#include "report/console.h"
#include "report/messages.h"
#include "util/system.h"

namespace cubenet {

namespace {

constexpr std::size_t kQuotedLine = 1024;     // longer quotations never fit into a message
constexpr std::size_t kUsualProperties = 256; // attribute records; few designs have more

void report_bad_term(const ReaderState &state, std::string_view line, const TermResult &result) {
  const std::string quoted(line.substr(0, kQuotedLine));
  switch (result.status) {
  case TERM_SHORT:
    return report_error(31411, "Product term spans more than one line on line %d in file '%s'", state.line_number,
                        state.file_name);
  case TERM_LONG:
    return report_error(31414, "Product term on line %d in file '%s' is too long", state.line_number, state.file_name);
  case TERM_ILLEGAL: {
    const char illegal[2] = {line[result.at], 0};
    if (illegal[0] == '\xff')
      return report_error(31413, "Product term '%s' on line %d in file '%s' is incomplete", quoted.c_str(),
                          state.line_number, state.file_name);
    return report_error(31412, "Product term '%s' on line %d in file '%s' contains illegal character '%s'",
                        quoted.c_str(), state.line_number, state.file_name, illegal);
  }
  case TERM_DRIVES:
  case TERM_EMPTY: return;
  }
}

// Reads a term in any spelling into the table's next row. A line shorter than the layout requires must be
// wrong: it is only checked, and no memory is allocated for the size that the file claims.
bool read_cube(ReaderState &state, std::string_view line) {
  CubeTable &cubes = state.cubes;
  std::uint32_t *row = line.size() >= cubes.inputs + cubes.outputs ? next_cube(cubes) : nullptr;
  const TermResult result = parse_term(line, cubes.inputs, cubes.outputs, row);
  if (result.status == TERM_DRIVES) cubes.NUM_CUBES++;
  if (result.status == TERM_DRIVES || result.status == TERM_EMPTY) return true;
  report_bad_term(state, line, result);
  console_put_text("read_tt2_cube\n");
  return false;
}

// A term that drives nothing is dropped without a message.
void read_product_term(ReaderState &state, std::string_view line) {
  if (!has_layout(state.cubes)) {
    report_error(31410, "PLA size must be declared before product term in file '%s'", state.file_name);
    state.failed = true;
  } else {
    state.has_term = true;
    if (!read_cube(state, line)) state.failed = true;
  }
  state.is_ended = state.is_ended || state.failed;
}

// Reads the usual spelling of a term fast. False if the line is anything else.
bool read_packed_term(ReaderState &state, std::string_view line) {
  CubeTable &cubes = state.cubes;
  if (!has_layout(cubes) || line.size() < cubes.inputs + cubes.outputs) return false;
  bool drives = false;
  if (!parse_packed_term(line, cubes.inputs, cubes.outputs, next_raw_cube(cubes), drives)) return false;
  if (drives) cubes.NUM_CUBES++;
  state.has_term = true;
  state.is_ended = state.failed; // in an earlier line
  return true;
}

void read_any_line(ReaderState &state, std::string_view line) {
  if (line.empty()) return;
  switch (line.front()) {
  case '#': return read_comment_line(state, line);
  case '.': return read_header_line(state, line);
  default: return read_product_term(state, line);
  }
}

// Whether a file's contents have changed since that status; always false if it isn't a regular file.
bool has_changed(std::FILE *file, const FileStatus &before) {
  FileStatus now;
  return before.is_regular && file_status(descriptor_of(file), now) &&
         (now.size != before.size || now.changed != before.changed);
}

void read_lines(ReaderState &state, std::FILE *file) {
  FileStatus before;
  if (!file_status(descriptor_of(file), before)) before = {};
  LineReader reader(file);
  for (std::string_view line; !state.is_ended && read_line(reader, line);) {
    if (state.line_number < INT_MAX) state.line_number++;
    if (!read_packed_term(state, line)) read_any_line(state, cut_line(line));
  }
  if (!reader.failed && !has_changed(file, before)) return;
  report_system_error(31102, "Unable to open file '%s' for reading", state.file_name);
  state.failed = true;
}

void require(ReaderState &state, bool is_there, int number, const char *what) {
  if (is_there) return;
  report_error(number, "No %s '%s'", what, state.file_name);
  state.failed = true;
}

void check_complete(ReaderState &state) {
  const Design &design = state.design;
  require(state, state.has_term, 31204, "data in PLA file");
  require(state, !design.pin_names.empty(), 31209, "pin list is specified in file");
  require(state, !design.ILB.empty(), 31210, "input variable is specified in file");
  require(state, !design.OLB.empty(), 31211, "output variable is specified in file");
}

PartRequest part_request(const ReaderState &state) {
  PartRequest request;
  request.device = state.device_name;
  request.part = run_settings.part_name.value_or(state.part);
  request.is_from_command_line = run_settings.part_name.has_value();
  request.has_part = request.is_from_command_line || !state.part.empty();
  return request;
}

void complete_design(ReaderState &state) {
  Design &design = state.design;
  const std::size_t pins = design.pin_names.size(), nodes = design.node_names.size();
  design.pin_locations.assign(pins, -1);
  design.xpins.resize(pins);
  design.node_groups.resize(nodes);
  design.ilb_attributes.resize(design.ILB.size());
  design.olb_attributes.resize(design.OLB.size());
  design.pin_glb = design.pin_ioc = make_empty_set(pins);
  design.node_glb = design.node_ioc = make_empty_set(nodes);
  for (std::size_t output = 0; output < state.phase.size(); output++)
    if (state.phase[output] == '0') flip_bit(design.output_inversion, output);
  design.device_series = run_settings.part_flag != 0 ? run_settings.part_flag : part_series(design.header.part);
  finish_macros(design);
}

} // namespace

std::unique_ptr<Design> read_tt2(std::FILE *file, const std::string &file_name, CubeTable &cubes) {
  release_cubes(cubes);
  set_cube_layout(cubes, 0, 0);
  auto design = std::make_unique<Design>();
  design->properties.reserve(kUsualProperties);
  ReaderState state{file_name.c_str(), *design, cubes};

  read_lines(state, file);
  if (!state.failed) check_complete(state);
  if (!select_part(part_request(state), design->header)) state.failed = true;

  if (state.failed) {
    release_cubes(cubes);
    return nullptr;
  }
  complete_design(state);
  return design;
}

} // namespace cubenet
