// Equality of functions, the second prover, and what a failed proof reports.
#include <gtest/gtest.h>

#include "kit/prove/equal.h"
#include "kit/support/translate.h"

namespace cubekit {
namespace {

// The parity of all variables, as a chain or as a tree.
Literal parity(Formulas &formulas, const std::vector<Literal> &variables, bool as_tree) {
  std::vector<Literal> values = variables;
  if (!as_tree) {
    for (std::size_t i = 1; i < values.size(); i++) values[0] = make_xor(formulas, values[0], values[i]);
    return values[0];
  }
  while (values.size() > 1) {
    const Literal a = values[values.size() - 1], b = values[values.size() - 2];
    values.resize(values.size() - 2);
    // a and not b, or not a and b
    values.insert(values.begin(),
                  make_or(formulas, {make_and(formulas, {a, invert(b)}), make_and(formulas, {invert(a), b})}));
  }
  return values[0];
}

TEST(Equality, IsExactBelowAndAboveTheLimitOfExhaustion) {
  for (const std::size_t count : {1U, 2U, 6U, 7U, 13U, 16U, 17U, 18U}) {
    Formulas formulas;
    std::vector<Literal> variables;
    for (std::size_t i = 0; i < count; i++) variables.push_back(make_variable(formulas, "v" + std::to_string(i)));
    const Literal chain = parity(formulas, variables, false), tree = parity(formulas, variables, true);
    Decider decider{formulas};
    Difference difference;
    EXPECT_FALSE(find_difference(decider, chain, tree, difference)) << count;
    EXPECT_TRUE(find_difference(decider, chain, invert(tree), difference)) << count;
    // Different under a single vector: the hardest to find.
    std::vector<Literal> all = variables;
    const Literal corner = make_and(formulas, all);
    ASSERT_TRUE(find_difference(decider, make_xor(formulas, chain, corner), tree, difference)) << count;
    for (const auto &[variable, value] : difference.vector) EXPECT_TRUE(value) << variable;
    EXPECT_NE(difference.first, difference.second);
    EXPECT_EQ(decider.by_sat > 0, count > kExhaustiveVariables);
  }
}

const char *const kCounter = R"(#$ MODULE counter
#$ PINS 3 clk q0 q1
.i 3
.o 4
.ilb clk q0.Q q1.Q
.ob q0.D q1.D q0.C q1.C
-0- 1000
-10 0100
-01 0100
1-- 0011
.end
)";

TEST(Proof, IsConfirmedByAnotherProver) {
  const cubenet::WorkingDir directory;
  Translation translation;
  ProofOptions options;
  options.abc = true;
  for (const std::string mode : {"", "-and 2 -or 2", "-p Tarvex5128K-100XQ64"}) {
    translate(kCounter, mode, translation);
    EXPECT_EQ(prove_translation(translation, options), "") << mode;
  }
  std::string nxf = cubenet::read_file("d.nxf");
  nxf[nxf.find("\t10 1") + 1] = '0';
  cubenet::write_file("d.nxf", nxf);
  EXPECT_NE(prove_translation(translation, options).find("abc: "), std::string::npos);
}

TEST(Proof, TellsTheEquationTheVectorBothValuesAndTheGates) {
  const cubenet::WorkingDir directory;
  Translation translation;
  translate(kCounter, "", translation);
  std::string nxf = cubenet::read_file("d.nxf");
  const std::size_t row = nxf.find("\t0 1\n");
  ASSERT_NE(row, std::string::npos);
  nxf[row + 1] = '1';
  cubenet::write_file("d.nxf", nxf);
  EXPECT_EQ(prove_translation(translation), "1 differences\n"
                                            "q0.D: the netlist gives 0, the truth table 1\n"
                                            "  for q0.Q=0\n"
                                            "  net q0_D = 0, driven by PLA q0_D with A0 = 0\n"
                                            "  net q0_Q = 0, driven by BUF q0_Q with A0 = 0\n");
}

TEST(Proof, NamesWhatTheNetlistLacks) {
  const cubenet::WorkingDir directory;
  Translation translation;
  translate(kCounter, "", translation);
  std::string smaller = kCounter;
  smaller.replace(smaller.find("q1.C"), 4, "q1.LH");
  cubenet::write_file("d.tt2", smaller);
  translation.design = read_design("d.tt2", false, translation.cubes, translation.messages);
  ASSERT_NE(translation.design, nullptr);
  const std::string text = prove_translation(translation);
  EXPECT_NE(text.find("there is no net for equation 'q1.LH'"), std::string::npos) << text;
  EXPECT_NE(text.find("'q1' has the wrong storage element"), std::string::npos) << text;
}

} // namespace
} // namespace cubekit
