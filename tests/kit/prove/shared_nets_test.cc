// A node that is read in three spellings of one net: in gate form their destinations are merged into one
// list.
#include <gtest/gtest.h>

#include "kit/support/translate.h"

namespace cubekit {
namespace {

TEST(SharedNets, OfSeveralColumnsListTheirReadersOnce) {
  const cubenet::WorkingDir directory;
  const std::string design = R"(#$ PINS 5 a b y z w
#$ NODES 1 n
.i 5
.o 6
.ilb a b n n.Q n.FB
.ob y.D y.C z w n.D n.C
1---- 010001
01--- 100010
--11- 001100
-01-0 001000
---10 000100
0-0-- 000100
--1-1 001100
---1- 001100
----1 001000
.e
)";
  Translation translation;
  for (const std::string options : {"", "-and 2 -or 2", "-and 12", "-or 3 -p 5", "-and 2 -p 8"}) {
    translate(design, options, translation);
    EXPECT_EQ(translation.status, 0) << translation.console;
    EXPECT_EQ(prove_translation(translation), "") << options;
  }
}

} // namespace
} // namespace cubekit
