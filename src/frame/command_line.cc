// Options are rows of one table; all follow the same rules for values. Nothing is printed here: the driver
// prints the usage text if the line is wrong.
#include "frame/command_line.h"

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <string_view>

#include "model/run_settings.h"

namespace cubenet {
namespace {

enum class Value { kNone, kText, kNumber };

struct Option {
  std::string_view name;
  Value value;
  void (*apply)(CommandLine &command, const char *value); // a missing value is null
};

// Text that is not a number in the range of int counts as 0, which no setting accepts.
int read_number(const char *text) {
  errno = 0;
  const long number = std::strtol(text, nullptr, 10);
  return errno != 0 || number < INT_MIN || number > INT_MAX ? 0 : static_cast<int>(number);
}

void set_gate_width(int &width, const char *value) {
  constexpr int kNarrowest = 2, kWidest = 100;
  run_settings.expand = true;
  const int number = read_number(value);
  if (number >= kNarrowest && number <= kWidest) width = number;
}

void set_part(const char *value) {
  run_settings.part_name = value;
  run_settings.part_flag = part_series(value);
}

void set_debug_level(const char *value) {
  if (const int level = read_number(value); level > 0) run_settings.debug_level = level;
}

// clang-format off
constexpr Option kOptions[] = {
    // name   value           effect
    {"-vb",   Value::kNone,   [](CommandLine &c, const char *) { c.version = c.brief = true; }},
    {"-bv",   Value::kNone,   [](CommandLine &c, const char *) { c.version = c.brief = true; }},
    {"-v",    Value::kNone,   [](CommandLine &c, const char *) { c.version = true; }},
    {"-b",    Value::kNone,   [](CommandLine &c, const char *) { c.brief = true; }},
    {"-p",    Value::kText,   [](CommandLine &, const char *value) { set_part(value); }},
    {"-i",    Value::kText,   [](CommandLine &c, const char *value) { c.input_name = value; }},
    {"-fext", Value::kText,   [](CommandLine &c, const char *value) { c.nxf_extension = value; }},
    {"-pla",  Value::kNone,   [](CommandLine &, const char *) { run_settings.expand = false; }},
    {"-and",  Value::kNumber, [](CommandLine &, const char *value) { set_gate_width(run_settings.and_width, value); }},
    {"-or",   Value::kNumber, [](CommandLine &, const char *value) { set_gate_width(run_settings.or_width, value); }},
    {"-V",    Value::kNumber, [](CommandLine &, const char *value) { set_debug_level(value); }},
    {"-C",    Value::kNone,   [](CommandLine &, const char *) { run_settings.case_sensitive = true; }},
};
// clang-format on

const Option *find_option(std::string_view name) {
  for (const Option &option : kOptions)
    if (option.name == name) return &option;
  return nullptr;
}

// Takes the option at the front of the last `left` arguments and returns the number of arguments used. An
// option's value must be followed by another argument, so the design name is never taken as a value.
int take_option(CommandLine &command, int left, char **arguments) {
  const Option *const option = find_option(arguments[0]);
  if (option != nullptr && option->value == Value::kNone) {
    option->apply(command, nullptr);
    return 1;
  }
  if (option == nullptr || left <= 2 || (option->value == Value::kText && arguments[1][0] == '-')) {
    command.usage_error = true;
    return 1;
  }
  option->apply(command, arguments[1]);
  return 2;
}

} // namespace

CommandLine parse_command_line(int argc, char **argv) {
  CommandLine command;
  reset_run_settings();
  int i = 1;
  while (i < argc && argv[i][0] == '-') i += take_option(command, argc - i, argv + i);
  if (argc < 2 || argc != i + 1)
    command.usage_error = true;
  else
    command.design_name = argv[i];
  return command;
}

FileNames make_file_names(const CommandLine &command) {
  const std::string &design = command.design_name;
  return {
      .input = command.input_name.value_or(design + ".tt2"),
      .nxf = design + "." + command.nxf_extension.value_or("nxf"),
      .constraints = design + ".tvx",
      .ddf = design + ".ddf",
      .listing = design + ".lst",
      .parameters = design + ".par",
      .response = design + ".rsp",
  };
}

} // namespace cubenet
