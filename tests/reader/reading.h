// Reads a design given as text, and checks what must hold for every design.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "model/cube_table.h"
#include "model/design.h"

namespace cubenet {

struct Reading {
  CubeTable cubes;
  std::unique_ptr<Design> design; // none after an error
  std::string messages;           // unwrapped, a line each

  explicit Reading(std::string_view text); // the file is called "t"
};

// A design of two inputs and one output around the statements; the term comes last.
std::string design_with(std::string_view statements);

// "codes name.ext=value; option N text; par N text; name:value" of all that attribute statements filled.
std::string describe_attributes(const Design &design);

// Reads every case of a script and compares. Cases are separated by empty lines; a line of a case is a
// message ("! "), what is stored ("= ", as from describe_attributes; "= failed" when there is no design) or a
// line of the input, which `wrap` turns into a file before it is read.
void check_cases(std::string_view script, std::string (*wrap)(std::string_view input));

void check_case_file(const std::string &name, std::string (*wrap)(std::string_view input)); // in "cases"

// The words, each followed by a space.
std::string join(const std::vector<std::string> &words);

// The numbers that the messages begin with, each followed by a space.
std::string message_numbers(std::string_view messages);

} // namespace cubenet
