// The command line: options for the run settings and for the driver, and the names of all files of the run.
#pragma once

#include <optional>
#include <string>

namespace cubenet {

struct CommandLine {
  bool usage_error = false;
  bool version = false; // "-v": the title shows version and compile date
  bool brief = false;   // "-b": the short title, and no rights notice
  std::string design_name;
  std::optional<std::string> input_name;    // "-i"
  std::optional<std::string> nxf_extension; // "-fext"
};

// Sets the run settings as well. After a usage error both hold the valid options, before and after the wrong
// one.
CommandLine parse_command_line(int argc, char **argv);

struct FileNames {
  std::string input;
  std::string nxf;
  std::string constraints;
  std::string ddf;
  std::string listing; // has a name, but is never written
  std::string parameters;
  std::string response; // only named in the parameter file
};

// All derived from the design name as typed, including any extension.
FileNames make_file_names(const CommandLine &command);

} // namespace cubenet
