// The run: command line, log, banner, input, and the stages in order. The first stage that fails ends it;
// files written by earlier stages are kept.
#include "frame/run.h"

#include <cstdio>
#include <cstdlib>
#include <memory>

#include "constraints/constraints.h"
#include "drc/check_design.h"
#include "frame/banner.h"
#include "frame/command_line.h"
#include "model/cube_table.h"
#include "model/design.h"
#include "netlist/writers.h"
#include "reader/reader.h"
#include "report/messages.h"
#include "util/memory.h"
#include "util/output_file.h"
#include "util/system.h"

namespace cubenet {
namespace {

constexpr const char *kProgram = "cubenet";
constexpr int kSuccess = 0;
constexpr int kFailure = 2;

[[noreturn]] void end_without_memory(long bytes) {
  set_out_of_memory_hook(nullptr); // reporting needs memory too, and may fail
  discard_open_outputs();
  report_system_error(31104, "Out of memory allocating %ld bytes\n", bytes);
  stop_messages();
  std::exit(kFailure);
}

// Files that a run still needs are never written as outputs, under any name: here, those that receive its
// messages.
void protect_messages() {
  for (std::FILE *const stream : {stdout, stderr})
    if (FileStatus status; file_status(descriptor_of(stream), status)) protect_from_output(status);
  protect_from_output(std::string(kProgram) + ".log");
}

// A directory can be opened, but not read; a file that receives the run's messages would never end.
std::FILE *open_input(const std::string &name) {
  std::FILE *const input = std::fopen(name.c_str(), "rb");
  if (input == nullptr) return nullptr;
  FileStatus status;
  if (file_status(descriptor_of(input), status) && !status.is_directory && !is_protected_from_output(status)) {
    protect_from_output(status);
    return input;
  }
  std::fclose(input);
  return nullptr;
}

bool translate(std::FILE *input, const FileNames &names) {
  // The product terms and all declarations.
  CubeTable cubes;
  const std::unique_ptr<Design> design = read_tt2(input, names.input, cubes);
  if (design == nullptr) return false;

  // From here on every signal has its flags, only used signals are left, and no rule is broken.
  if (check_design(*design, cubes) != 0) return false;

  // Renames the signals that collide with generated names.
  if (write_ddf(cubes, names.ddf, design.get()) != 0) return false;

  if (write_constraints(names.constraints, *design) != 0) return false;

  // Starts from the names left by the ddf writer.
  return write_nxf(cubes, names.nxf, names.parameters, names.response, design.get()) == 0;
}

int run_design(const CommandLine &command) {
  const FileNames names = make_file_names(command);
  start_messages(kProgram);
  protect_messages();
  print_banner(command.version, command.brief, command.design_name);

  std::FILE *const input = open_input(names.input);
  if (input == nullptr) {
    report_system_error(31102, "Unable to open file '%s' for reading", names.input.c_str());
    stop_messages();
    return kFailure;
  }
  const bool translated = translate(input, names);
  std::fclose(input);

  print_line(" ");
  print_line("%s", translated ? "PLA reading and translation completed successfully"
                              : "PLA reading and translation completed with errors");
  stop_messages();
  return translated ? kSuccess : kFailure;
}

} // namespace

int run_program(int argc, char **argv) {
  const OutOfMemoryHook hook_before = set_out_of_memory_hook(end_without_memory);
  end_protection(); // of an earlier run's files
  const CommandLine command = parse_command_line(argc, argv);
  if (command.usage_error) print_usage(command.version, command.brief);
  const int status = command.usage_error ? kFailure : run_design(command);
  end_protection();
  set_out_of_memory_hook(hook_before);
  return status;
}

} // namespace cubenet
