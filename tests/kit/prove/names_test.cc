// Every name that the program makes for a design is given in turn to all that a user can name, and the design is
// translated again: no net has two sources, no two symbols have one name, and what is computed stays the same.
#include <algorithm>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "kit/support/translate.h"

namespace cubekit {
namespace {

// The names that begin with '@' are those that others are put in for: an input, an output, a register, a node, an
// instance, and two nets that nothing declares, driven and read.
const char *const kDesign = R"(#$ MODULE names
#$ EXTERNAL m 2 in'i out'o
#$ PINS 16 a f c e B B_D @in @out @reg- GND t u- q j x z
#$ NODES 5 k l @node _PLN B_OE
#$ PROPERTY corvane LXOR2 x
#$ INSTANCE same m 2 q.Q z
#$ INSTANCE same m 2 a apart
#$ INSTANCE last m 2 @node.FB apart
#$ INSTANCE @inst m 2 @read @net
#$ INSTANCE next m 2 @net k
.i 14
.o 34
.ilb a f c e @in B_D q.Q k @node t @reg.FB B_OE _PLN.Q u
.ob B.D B.C B.AP B.CE @out @reg.REG @reg.C @reg.AR @reg.OE GND t t.OE u.D u.LE u.AR q.T q.C q.AR j.J j.K j.C j.SR x l @node.D.X1 @node.D.X2 @node.C @node.SP _PLN.J _PLN.K _PLN.C B_OE.X1 B_OE.X2 B_D-
)";

// Every output is a sum of one to three terms over two to four columns, the last one also of wide terms.
std::string design_text() {
  std::string text = kDesign;
  const auto add = [&](std::size_t output, std::initializer_list<std::pair<int, char>> literals) {
    std::string in(14, '-'), out(34, '0');
    for (const auto &[column, value] : literals) in[static_cast<std::size_t>(column)] = value;
    out[output] = '1';
    text += in + ' ' + out + '\n';
  };
  for (int output = 0; output < 34; output++) {
    const int first = output % 14, second = (output * 5 + 1) % 14, third = (output * 7 + 3) % 14;
    const auto at = static_cast<std::size_t>(output);
    if (output == 22) { // x is a plain XOR
      add(at, {{0, '1'}, {1, '0'}});
      add(at, {{0, '0'}, {1, '1'}});
      continue;
    }
    add(at, {{first, '1'}, {second, '0'}});
    if (output % 3 > 0) add(at, {{third, '0'}, {(third + 1) % 14, '1'}, {(third + 2) % 14, '0'}});
    if (output % 3 > 1) add(at, {{third, '1'}});
  }
  return text + ".e\n";
}

std::string replaced(std::string text, const std::string &what, const std::string &by) {
  for (std::size_t at = 0; (at = text.find(what, at)) != std::string::npos; at += by.size())
    text.replace(at, what.size(), by);
  return text;
}

// All second words of lines that begin with the keyword.
void collect(const std::string &text, const std::string &keyword, int word, std::set<std::string> &names,
             std::string &doubled) {
  std::set<std::string> seen;
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) {
    if (!line.starts_with(keyword)) continue;
    std::istringstream words(line.substr(0, line.find(';')));
    std::string name;
    for (int i = 0; i <= word; i++) words >> name;
    if (!seen.insert(name).second) doubled += keyword + name + '\n';
    names.insert(name);
  }
}

struct Form {
  std::string options;
};

TEST(Names, GivenToUsersThingsStayUnique) {
  const cubenet::WorkingDir directory;
  const std::string base = design_text();
  const std::vector<std::string> forms{"", "-and 2 -or 2"};
  Translation translation;
  std::set<std::string> made;
  for (const std::string &form : forms) {
    translate(base, form, translation);
    ASSERT_EQ(translation.status, 0) << translation.console;
    std::string doubled;
    collect(cubenet::read_file("d.nxf"), "NET ", 1, made, doubled);
    collect(cubenet::read_file("d.nxf"), "SYM ", 2, made, doubled);
    for (const std::string &line : {cubenet::read_file("d.ddf")}) {
      std::istringstream lines(line);
      for (std::string each; std::getline(lines, each);) {
        const std::size_t colon = each.find(": ");
        if (colon == std::string::npos) continue;
        made.insert(each.substr(0, colon));
        const std::string symbol = each.substr(colon + 2, each.find_first_of("; ,", colon + 2) - colon - 2);
        made.insert(symbol);
      }
    }
    EXPECT_EQ(doubled, "") << form;
    EXPECT_EQ(prove_translation(translation), "") << form;
    EXPECT_EQ(check_translation(), "") << form;
  }
  std::map<std::string, int> bad;
  int runs = 0;
  for (const std::string &name : made) {
    if (name.starts_with(".") || name.find('.') != std::string::npos) continue;
    for (const std::string thing : {"@in", "@out", "@reg", "@node", "@inst", "@net", "@read"}) {
      for (const std::string &form : forms) {
        translate(replaced(base, thing, name), form, translation);
        if (translation.status != 0) {bad["refused"]++; std::cout << translation.console; continue;}
        runs++;
        std::set<std::string> names;
        std::string doubled;
        collect(cubenet::read_file("d.nxf"), "NET ", 1, names, doubled);
        collect(cubenet::read_file("d.nxf"), "SYM ", 2, names, doubled);
        std::string p = prove_translation(translation), c = check_translation();
        if (!doubled.empty()) bad["doubled"]++, std::cout << thing << " " << name << " '" << form << "': " << doubled;
        else if (!p.empty()) bad["prove"]++,  std::cout << thing << " " << name << " '" << form << "': " << p.substr(0,200);
        else if (!c.empty()) bad["check"]++, std::cout << thing << " " << name << " '" << form << "': " << c.substr(0,200);
      }
    }
  }
  std::cout << made.size() << " names, " << runs << " runs\n";
  for (auto &[k, v] : bad) std::cout << k << " " << v << "\n";
}

} // namespace
} // namespace cubekit
