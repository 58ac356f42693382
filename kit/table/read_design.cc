// Runs the reader and the checker with their messages captured: most commands want them only when something
// is wrong.
#include "kit/table/read_design.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <ostream>

#include "constraints/constraints.h"
#include "drc/check_design.h"
#include "kit/util/progress.h"
#include "kit/util/status.h"
#include "model/run_settings.h"
#include "netlist/map_design.h"
#include "netlist/writers.h"
#include "reader/reader.h"
#include "report/console.h"
#include "report/messages.h"
#include "util/output_file.h"

namespace cubekit {

namespace {

struct CaughtConsole : cubenet::HostConsole {
  std::string &text;
  cubenet::HostConsole *before;

  explicit CaughtConsole(std::string &caught) : text(caught), before(cubenet::set_host_console(this)) {}
  ~CaughtConsole() override { cubenet::set_host_console(before); }
  CaughtConsole(const CaughtConsole &) = delete;
  CaughtConsole &operator=(const CaughtConsole &) = delete;
  void print(std::string_view more) override { text += more; }
};

// The statement that the reader refuses without a message.
constexpr const char *kBadInstance =
    ": an INSTANCE statement names a macro that isn't declared above it, or doesn't fit its ports\n";

std::unique_ptr<cubenet::Design> read_open(std::FILE *file, const std::string &name, bool case_sensitive,
                                           cubenet::CubeTable &cubes, std::string &messages) {
  if (file == nullptr) {
    messages = name + ": " + std::strerror(errno) + '\n';
    return nullptr;
  }
  cubenet::run_settings.case_sensitive = case_sensitive;
  messages.clear();
  const CaughtConsole console(messages);
  std::unique_ptr<cubenet::Design> design = cubenet::read_tt2(file, name, cubes);
  std::fclose(file);
  if (design == nullptr && messages.find(" ERROR: ") == std::string::npos) messages += name + kBadInstance;
  return design;
}

void choose_part(const std::string &part) {
  if (part.empty()) return;
  cubenet::run_settings.part_name = part;
  cubenet::run_settings.part_flag = cubenet::part_series(part);
}

bool read_for_part(const TableSource &source, const std::string &part, TruthTable &table) {
  choose_part(part);
  cubenet::release_cubes(table.cubes);
  const auto read = [&] { return read_design(source.path, source.case_sensitive, table.cubes, table.messages); };
  table.design = during("reading the truth table", read);
  return table.design != nullptr;
}

// The writer doesn't report a fault of its file, but then leaves no file.
bool write_whole_constraints(const std::string &path, const cubenet::Design &design, std::string &messages) {
  cubenet::FileStatus status;
  if (cubenet::write_constraints(path, design) == 0 && cubenet::find_file(path, status)) return true;
  messages += path + ": can't be written\n";
  return false;
}

bool check_table(TruthTable &table) {
  table.messages.clear(); // messages about a legal design are of no interest
  return during("checking the rules", [&] { return check_design(*table.design, table.cubes, table.messages); });
}

} // namespace

std::unique_ptr<cubenet::Design> read_statements(const std::string &statements, const std::string &part) {
  std::string messages;
  cubenet::CubeTable cubes;
  cubenet::reset_run_settings();
  choose_part(part);
  const std::string table = statements + "#$ PINS 1 a\n.i 1\n.o 1\n.ilb a\n.ob a\n1 1\n.end\n";
  auto design = read_design_text(table, "statements", false, cubes, messages);
  cubenet::reset_run_settings();
  return design;
}

bool is_part(const std::string &name) {
  return name.find_first_of(" \t,\r\n") == std::string::npos &&
         read_statements("#$ PROPERTY corvane PART " + name + '\n', "") != nullptr;
}

std::unique_ptr<cubenet::Design> read_design(const std::string &path, bool case_sensitive, cubenet::CubeTable &cubes,
                                             std::string &messages) {
  cubenet::protect_from_output(path);
  return read_open(std::fopen(path.c_str(), "rb"), path, case_sensitive, cubes, messages);
}

std::unique_ptr<cubenet::Design> read_design_text(std::string_view text, const std::string &name, bool case_sensitive,
                                                  cubenet::CubeTable &cubes, std::string &messages) {
  return read_open(fmemopen(const_cast<char *>(text.data()), text.size(), "rb"), name, case_sensitive, cubes, messages);
}

bool check_design(cubenet::Design &design, const cubenet::CubeTable &cubes, std::string &messages) {
  const CaughtConsole console(messages);
  return cubenet::check_design(design, cubes) == 0;
}

bool read_table(const TableSource &source, TruthTable &table) {
  const bool done = read_for_part(source, source.part, table);
  if (!source.part.empty() || source.netlist_part.empty()) return done;
  // The netlist's part is the one that the table was translated for.
  if (done && table.design->header.part == source.netlist_part) return true;
  return read_for_part(source, source.netlist_part, table);
}

int load_table(const TableSource &source, TruthTable &table, std::ostream &errors) {
  int status = read_table(source, table) ? kYes : kMisuse;
  if (status == kYes && !check_table(table)) status = kNo;
  if (status != kYes) errors << table.messages;
  return status;
}

int load_pins(const TableSource &source, std::vector<DeclaredPin> &pins, std::ostream &errors) {
  TruthTable table;
  int status = read_table(source, table) ? kYes : kMisuse;
  if (status == kYes) {
    pins.clear(); // the check removes the names of unused ones
    for (const std::string &name : table.design->pin_names) pins.push_back({name, false});
    if (!check_table(table)) status = kNo;
  }
  if (status != kYes) {
    errors << table.messages;
    return status;
  }
  const CaughtConsole console(table.messages);
  const cubenet::MappedDesign mapped = cubenet::map_design(*table.design, table.cubes, cubenet::XorPlace::WITH_SIGNAL);
  for (const cubenet::ExternalPin &pin : mapped.netlist.external_pins)
    pins[static_cast<std::size_t>(pin.pin)].is_used = true;
  return kYes;
}

bool write_translation(TruthTable &table, const std::string &stem, const std::string &response) {
  const CaughtConsole console(table.messages);
  cubenet::Design *const design = table.design.get();
  return cubenet::write_ddf(table.cubes, stem + ".ddf", design) == 0 &&
         write_whole_constraints(stem + ".tvx", *design, table.messages) &&
         cubenet::write_nxf(table.cubes, stem + ".nxf", stem + ".par", response, design) == 0;
}

} // namespace cubekit
