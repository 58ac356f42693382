// Reads files in one go into memory that nobody has filled before.
#include "kit/file_text.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <new>
#include <ostream>
#include <utility>

namespace cubekit {

namespace {

constexpr std::size_t kBlock = std::size_t{64} << 10;
constexpr std::size_t kHugePage = std::size_t{2} << 20;

// Large texts lie on large pages where the system has them: setting up small ones takes longer than reading the file.
char *allocate(std::size_t size) {
  if (size < 4 * kHugePage) {
    if (void *bytes = std::malloc(size); bytes != nullptr) return static_cast<char *>(bytes);
    throw std::bad_alloc();
  }
  const std::size_t rounded = (size + kHugePage - 1) / kHugePage * kHugePage;
  void *bytes = std::aligned_alloc(kHugePage, rounded);
  if (bytes == nullptr) throw std::bad_alloc();
  ::madvise(bytes, rounded, MADV_HUGEPAGE);
  return static_cast<char *>(bytes);
}

} // namespace

FileText::FileText(std::size_t size) : bytes_(allocate(size + kPadding)), size_(size) { end_at(size); }

void FileText::end_at(std::size_t size) {
  size_ = size;
  std::memset(bytes_.get() + size_, '\n', kPadding);
}

void FileText::Free::operator()(char *bytes) const { std::free(bytes); }

bool read_file(const std::string &path, FileText &text, Finding &error) {
  const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  struct stat status {};
  if (descriptor < 0 || ::fstat(descriptor, &status) != 0) {
    error = {0, std::strerror(errno)};
    if (descriptor >= 0) ::close(descriptor);
    return false;
  }
  // One byte more than there seem to be, so that the end is seen; what has no size, as a pipe, is read by blocks.
  text = FileText(S_ISREG(status.st_mode) ? static_cast<std::size_t>(status.st_size) + 1 : kBlock);
  std::size_t used = 0;
  ssize_t got = 0;
  while ((got = ::read(descriptor, text.data() + used, text.size() - used)) > 0) {
    used += static_cast<std::size_t>(got);
    if (used < text.size()) continue;
    FileText larger(2 * used);
    std::memcpy(larger.data(), text.data(), used);
    text = std::move(larger);
  }
  if (got < 0) error = {0, std::strerror(errno)};
  ::close(descriptor);
  text.end_at(used);
  return got >= 0;
}

void print_finding(std::ostream &stream, const std::string &path, const Finding &finding) {
  stream << path;
  if (finding.line != 0) stream << ':' << finding.line;
  stream << ": " << finding.text << '\n';
}

} // namespace cubekit
