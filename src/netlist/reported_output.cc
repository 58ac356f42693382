#include "netlist/reported_output.h"

#include "report/messages.h"

namespace cubenet {

bool open_reported(OutputFile &file, const std::string &path, const char *lead) {
  if (open_output(file, path)) return true;
  report_error(31103, "%sUnable to open file '%s' for writing", lead, path.c_str());
  return false;
}

bool close_reported(OutputFile &file, const char *lead) {
  const std::string path = file.path;
  if (close_output(file)) return true;
  report_error(31103, "%sUnable to write file '%s'", lead, path.c_str());
  return false;
}

} // namespace cubenet
