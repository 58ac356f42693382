// The program's title, version, rights notice and usage.
#pragma once

#include <string>

namespace cubenet {

// The four titles; `version` adds the version text.
std::string program_title(bool version, bool brief);
// Version and compile date.
std::string version_text();
// Pads the numbers of a date such as "Mon Jan 11 14:11:10 PST 1999"; returns any other text unchanged.
std::string format_compile_date(const char *date);

// To the console only: if the command line is wrong, there is no log yet.
void print_usage(bool version, bool brief);
// As messages: the title, the rights notice unless brief, and the design being read.
void print_banner(bool version, bool brief, const std::string &design_name);

} // namespace cubenet
