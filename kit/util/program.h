// Other programs, run for what they print.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace cubekit {

// Runs a program that is found as a shell finds it, with the input on its standard input, and waits for its end; what
// it prints comes into `output`, its errors go where ours do. False when it can't be started or ends with another
// status than 0; `fault` then says so, without the program's name.
[[nodiscard]] bool run_program(std::vector<std::string> words, std::string_view input, std::string &output,
                               std::string &fault);

} // namespace cubekit
