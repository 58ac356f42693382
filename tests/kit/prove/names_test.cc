// Every name that the program generates for a design is given in turn to each thing that a user can name, and
// the design is translated again: no two nets and no two symbols share a name, and the functions stay the
// same.
#include <set>
#include <string>

#include <gtest/gtest.h>

#include "kit/support/translate.h"

namespace cubekit {
namespace {

// '@' begins the names to be replaced: an input, an output, a register, a node, an instance, and two nets
// that nothing declares, one driven and one only read.
const std::string kDesign = R"(#$ MODULE names
#$ EXTERNAL m 2 in'i out'o
#$ PINS 12 a c e B B_D GND t u- z @in @out @reg-
#$ NODES 5 _PLN B_OE k x @node
#$ PROPERTY corvane LXOR2 x
#$ INSTANCE same m 2 B.Q z
#$ INSTANCE same m 2 a apart
#$ INSTANCE last m 2 @node.Q apart
#$ INSTANCE next m 2 @net k
#$ INSTANCE @inst m 2 @read @net
.i 12
.o 27
.ilb a c e @in B_D k @node t @reg.FB B_OE _PLN.Q x
.ob x @out- B.D B.C B.AP B.CE B_D- GND t t.OE u.D u.LE u.AR _PLN.J _PLN.K _PLN.C B_OE.X1 B_OE.X2 @out.OE @reg.REG.X1 @reg.REG.X2 @reg.C @reg.OE @node.T @node.C @node.SR @node.AR
10---------- 100000000000000000000000000
01---------- 100000000000000000000000000
1--00------1 010000000000000000000000000
-11--------- 010000000000000000000000000
)";

// The other outputs have a term or two each, some of two literals and some of four.
std::string other_terms() {
  std::string text;
  for (std::size_t output = 2; output < 27; output++) {
    std::string in(12, '-'), out(27, '0');
    in[output % 12] = '1', in[(output * 5 + 1) % 12] = '0', out[output] = '1';
    text += in + ' ' + out + '\n';
    if (output % 3 != 0) continue;
    in[(output + 2) % 12] = '1', in[(output + 7) % 12] = '0', in[output % 12] = '0';
    text += in + ' ' + out + '\n';
  }
  return text + ".e\n";
}

std::string replaced(std::string text, const std::string &what, const std::string &by) {
  for (std::size_t at = 0; (at = text.find(what, at)) != std::string::npos; at += by.size())
    text.replace(at, what.size(), by);
  return text;
}

// All words that could be derived names.
void collect_names(const std::string &text, std::set<std::string> &names) {
  const char *const separators = " \t\n;,:.";
  for (std::size_t at = 0; (at = text.find_first_not_of(separators, at)) != std::string::npos;) {
    const std::string word = text.substr(at, text.find_first_of(separators, at) - at);
    if (word.find('_') != std::string::npos) names.insert(word);
    at += word.size();
  }
}

TEST(Names, StayApartWhateverUsersCallTheirThings) {
  const cubenet::WorkingDir directory;
  const std::string design = kDesign + other_terms(), forms[] = {"", "-and 2 -or 2"};
  std::set<std::string> names;
  Translation translation;
  for (const std::string &form : forms) {
    translate(design, form, translation);
    ASSERT_EQ(translation.status, 0) << translation.console;
    collect_names(cubenet::read_file("d.nxf"), names);
    collect_names(cubenet::read_file("d.ddf"), names);
  }
  int translated = 0;
  for (const std::string &name : names)
    for (const std::string thing : {"@in", "@out", "@reg", "@node", "@inst", "@net", "@read"})
      for (const std::string &form : forms) {
        translate(replaced(design, thing, name), form, translation);
        if (translation.status != 0) continue; // two pins of one name, for one
        EXPECT_EQ(prove_translation(translation) + check_translation(), "") << name << " for " << thing << ' ' << form;
        translated++;
      }
  EXPECT_GT(translated, 1000);
}

} // namespace
} // namespace cubekit
