#include "frame/installation.h"

#include <cstdlib>
#include <string>
#include <unistd.h>

#include <gtest/gtest.h>

namespace cubenet {
namespace {

std::string path, boxes;

const InstallationHost kHost = {
    [] { return path; },
    [](const char *text, const char *caption) { boxes += std::string(caption) + " = " + text + "\n"; },
};

std::string root() {
  const char *const value = std::getenv("QVSROOT");
  return value != nullptr ? value : "unset";
}

TEST(Installation, TakesTheParentOfTheProgramsDirectory) {
  const struct {
    const char *path;
    int result;
    const char *root;
  } rows[] = {
      {"/opt/tools/bin/cubenet", 1, "/opt/tools"},
      {"C:\\tools\\bin\\cubenet.exe", 1, "C:\\tools"},
      {"C:\\tools/bin/cubenet.exe", 1, "C:\\tools"},
      {"/opt//cubenet", 1, "/opt"},
      {"/bin/cubenet", 2, "unset"},
      {"bin/cubenet", 2, "unset"},
      {"cubenet", 2, "unset"},
      {"", 2, "unset"},
  };
  for (const auto &row : rows) {
    unsetenv("QVSROOT");
    path = row.path;
    EXPECT_EQ(set_installation_directory(kHost), row.result) << row.path;
    EXPECT_EQ(root(), row.root);
  }
}

TEST(Installation, LeavesASetDirectoryAloneOnlyWhenToldToUseIt) {
  path = "/a/b/c";
  setenv("QVSROOT", "mine", 1);
  setenv("QVS_USE_QVSROOT", "", 1);
  EXPECT_EQ(set_installation_directory(kHost), 0);
  EXPECT_EQ(root(), "mine");
  unsetenv("QVS_USE_QVSROOT");
  setenv("QVS_DEBUG_ENV", "1", 1);
  EXPECT_EQ(set_installation_directory(kHost), 1);
  EXPECT_EQ(root(), "/a");
  EXPECT_EQ(boxes, "qvprint: QVSROOT = QVSROOT=/a\nqvprint: getenv(QVSROOT) = /a\n");
  unsetenv("QVS_DEBUG_ENV");
  EXPECT_EQ(set_installation_directory(system_installation_host()), 1);
  EXPECT_EQ(root().front(), '/');
  unsetenv("QVSROOT");
}

} // namespace
} // namespace cubenet
