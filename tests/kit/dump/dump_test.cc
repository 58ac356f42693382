// The listing through the kit: what the user sees, and how faults end.
#include "kit/support/export_tools.h"

namespace cubekit {
namespace {

TEST(DumpTest, TheListingIsTheSameInAFileAndOnTheOutput) {
  TempDir dir;
  const std::string counter = "-i " + example_path("counter") + " counter";
  const Outcome printed = run_kit("dump " + counter);
  EXPECT_EQ(printed.status, 0);
  EXPECT_EQ(run_kit("dump -o " + dir.file("listing") + " " + counter).text, "");
  EXPECT_EQ(read_file(dir.file("listing")), printed.text);
  EXPECT_NE(printed.text.find("counter"), std::string::npos);
  run_kit("dump " + counter + " > " + dir.file("redirected"));
  EXPECT_EQ(read_file(dir.file("redirected")), printed.text);
  EXPECT_EQ(run_kit("dump " + counter + " > /dev/full").status, 2);
  EXPECT_EQ(run_kit("dump -o /dev/full " + counter).status, 2);
}

TEST(DumpTest, DesignsThatAreNotReadOrNotLegalAreReported) {
  TempDir dir;
  EXPECT_EQ(run_kit("dump " + dir.file("none")).status, 2);
  write_file(dir.file("broken.tt2"), "nonsense\n");
  const Outcome broken = run_kit("dump " + dir.file("broken"));
  EXPECT_EQ(broken.status, 2);
  EXPECT_NE(broken.text.find("ERROR"), std::string::npos) << broken.text;
  // Parts of other series have no tristate buffers inside.
  const std::string node_oe = "dump -i " + example_path("node_oe") + " node_oe";
  const Outcome illegal = run_kit(node_oe + " -p Tarvex5128K");
  EXPECT_EQ(illegal.status, 1);
  EXPECT_NE(illegal.text.find("ERROR"), std::string::npos) << illegal.text;
  EXPECT_EQ(run_kit(node_oe).status, 0);
}

} // namespace
} // namespace cubekit
