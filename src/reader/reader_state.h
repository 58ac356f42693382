// State shared by the parts of the reader while one file is read.
#pragma once

#include <string>
#include <string_view>

#include "model/cube_table.h"
#include "model/design.h"
#include "util/text_hash.h"

namespace cubenet {

struct ReaderState {
  const char *file_name; // for messages
  Design &design;
  CubeTable &cubes;      // laid out once ".i" and ".o" were accepted in this order
  int line_number = 0;   // physical lines, from 1
  bool failed = false;   // an error was found; warnings never set it
  bool is_ended = false; // ".e" or ".end" was read

  int NI = 0; // ".i", or the length of an input list that contradicts it; 0: not known
  int NO = 0; // ".o", likewise
  bool has_term = false;

  bool has_phase = false;
  std::string phase{}; // as written; a '0' flips the output's inversion

  bool is_title_full = false;
  std::string device_name{}; // first DEVICE statement; empty: none
  std::string part{};        // latest PART attribute; empty: none

  // The newest macro of each name; Design::macros has the oldest first until the file is read.
  TextMap<std::string, std::size_t> macros_by_name{};
};

} // namespace cubenet
