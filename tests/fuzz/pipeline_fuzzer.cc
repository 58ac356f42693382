// Whole runs on any bytes. The first byte chooses the options, the rest is the design; what the run prints
// and leaves is checked against the promises of every run.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>

#include <unistd.h>

#include "reliability/promises.h"

namespace {

char directory[] = "/dev/shm/cubenet-fuzz-XXXXXX";

void remove_directory() {
  std::error_code ignored;
  std::filesystem::remove_all(directory, ignored);
}

} // namespace

// Findings and the corpus are written after the working directory has changed: use absolute paths.
extern "C" int LLVMFuzzerInitialize(int *, char ***) {
  if (mkdtemp(directory) == nullptr || chdir(directory) != 0) std::abort();
  return std::atexit(remove_directory);
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  if (size == 0) return 0;
  std::ofstream("d.tt2", std::ios::binary).write(reinterpret_cast<const char *>(data + 1), std::streamsize(size - 1));
  const std::string broken = cubenet::broken_promise(data[0]);
  if (broken.empty()) return 0;
  std::fputs(broken.c_str(), stderr);
  remove_directory();
  std::abort();
}
