// What the program says about itself: title, version, rights notice, usage.
#pragma once

#include <string>

namespace cubenet {

// The four titles; with `version` the version text stands in it.
std::string program_title(bool version, bool brief);
// Version and compile date.
std::string version_text();
// A date of the form "Mon Jan 11 14:11:10 PST 1999" with its numbers padded; any other text as it is.
std::string format_compile_date(const char *date);

// To the console alone: there is no log yet when the command line is wrong.
void print_usage(bool version, bool brief);
// As messages: title, rights notice unless brief, and what is being read.
void print_banner(bool version, bool brief, const std::string &design_name);

} // namespace cubenet
