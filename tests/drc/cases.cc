// Reads the case files.
#include "drc/cases.h"

#include <fstream>
#include <sstream>

#include <gtest/gtest.h>

namespace cubenet {

std::vector<Case> read_cases(const std::string &file_name) {
  std::vector<Case> cases;
  std::ifstream file(std::string(PROJECT_DIR) + "/tests/drc/" + file_name);
  EXPECT_TRUE(file.is_open()) << file_name;
  Case current;
  bool is_open = false;
  const auto close = [&] {
    if (is_open) cases.push_back(current);
    current = {current.design, "", "", "", "", "", ""};
    is_open = false;
  };
  for (std::string line; std::getline(file, line);) {
    const char kind = line.empty() ? '\0' : line[0];
    if (kind == 'P' || kind == 'N' || kind == 'I') close(); // a signal is a case of its own
    const std::string text = line.size() > 2 ? line.substr(2) : "";
    is_open = is_open || (kind != '\0' && kind != ';' && kind != 'D');
    if (kind == '\0')
      close();
    else if (kind == 'D')
      current.design = text;
    else if (kind == '+')
      current.statements += text + "\n";
    else if (kind == '*')
      current.terms += text + "\n";
    else if (kind == '-')
      current.settings = text;
    else if (kind == '>')
      current.messages += text + "\n";
    else if (kind == '=')
      current.stored += (current.stored.empty() ? "" : " ") + text;
    else if (kind != ';')
      current.signal = line;
  }
  close();
  EXPECT_FALSE(cases.empty()) << file_name;
  return cases;
}

std::vector<std::string> split(const std::string &text) {
  std::istringstream stream(text);
  std::vector<std::string> words;
  for (std::string word; stream >> word;) words.push_back(word);
  return words;
}

} // namespace cubenet
