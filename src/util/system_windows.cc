// The operating system interface on Windows. Files are opened by system calls: with the C runtime, nobody
// could delete an open file, and appending would seek the end first, so that two runs could overwrite each
// other's text.
#define _CRT_RAND_S // makes <cstdlib> declare rand_s; any header may include it first
#include "util/system.h"

#include <cstdlib>
#include <cstring>

#include <fcntl.h>
#include <io.h>
#include <windows.h>

namespace cubenet {

namespace {

HANDLE handle_of(int descriptor) { return reinterpret_cast<HANDLE>(_get_osfhandle(descriptor)); }

constexpr std::uint64_t join(DWORD high, DWORD low) { return std::uint64_t{high} << 32 | low; }

bool handle_status(HANDLE handle, FileStatus &status) {
  if (handle == INVALID_HANDLE_VALUE) return false;
  status = {};
  BY_HANDLE_FILE_INFORMATION found;
  if (GetFileType(handle) != FILE_TYPE_DISK) return true;
  if (GetFileInformationByHandle(handle, &found) == 0) return false;
  status.is_directory = (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
  status.is_regular = !status.is_directory;
  status.identity = {found.dwVolumeSerialNumber, join(found.nFileIndexHigh, found.nFileIndexLow)};
  status.size = join(found.nFileSizeHigh, found.nFileSizeLow);
  status.changed = join(found.ftLastWriteTime.dwHighDateTime, found.ftLastWriteTime.dwLowDateTime);
  return true;
}

// Keeps other writers out while a text is appended: not every system that runs Windows programs appends
// atomically. The locked byte is beyond the end of any file.
struct WriteLock {
  HANDLE handle;
  OVERLAPPED place{};
  bool held;

  explicit WriteLock(HANDLE file) : handle(file) {
    place.OffsetHigh = 1U << 30;
    held = LockFileEx(handle, LOCKFILE_EXCLUSIVE_LOCK, 0, 1, 0, &place) != 0; // devices, pipes: no locks
  }
  WriteLock(const WriteLock &) = delete;
  WriteLock &operator=(const WriteLock &) = delete;
  ~WriteLock() {
    if (held) UnlockFileEx(handle, 0, 1, 0, &place);
  }
};

} // namespace

int open_file(const std::string &path, OpenFor use) {
  const bool appends = use == OpenFor::APPENDING || use == OpenFor::EMPTYING;
  const DWORD access = appends ? FILE_APPEND_DATA | FILE_READ_DATA | SYNCHRONIZE : GENERIC_WRITE;
  const DWORD creation = use == OpenFor::REPLACING ? OPEN_EXISTING : OPEN_ALWAYS;
  const DWORD share = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
  if (use == OpenFor::EMPTYING) {
    const int emptied = open_file(path, OpenFor::OVERWRITING);
    if (emptied < 0) return -1;
    const bool is_empty = cut_file(emptied, 0);
    if (!close_file(emptied) || !is_empty) return -1;
  }
  const HANDLE handle = CreateFileA(path.c_str(), access, share, nullptr, creation, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (handle == INVALID_HANDLE_VALUE) return -1;
  const int descriptor = _open_osfhandle(reinterpret_cast<std::intptr_t>(handle), _O_BINARY | _O_NOINHERIT);
  if (descriptor < 0) CloseHandle(handle);
  return descriptor;
}

bool file_status(int descriptor, FileStatus &status) { return handle_status(handle_of(descriptor), status); }

bool find_file(const std::string &path, FileStatus &status) {
  constexpr DWORD kShare = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
  const DWORD flags = FILE_FLAG_BACKUP_SEMANTICS; // folders too
  const HANDLE handle = CreateFileA(path.c_str(), FILE_READ_ATTRIBUTES, kShare, nullptr, OPEN_EXISTING, flags, nullptr);
  const bool is_found = handle_status(handle, status);
  if (handle != INVALID_HANDLE_VALUE) CloseHandle(handle);
  return is_found;
}

bool write_all(int descriptor, const char *text, std::size_t length) {
  constexpr std::size_t kMost = std::size_t{1} << 30; // the runtime counts in int
  const WriteLock lock(handle_of(descriptor));
  while (length > 0) {
    const int written = _write(descriptor, text, static_cast<unsigned>(length < kMost ? length : kMost));
    if (written <= 0) return false;
    text += written;
    length -= static_cast<std::size_t>(written);
  }
  return true;
}

bool cut_file(int descriptor, std::uint64_t size) {
  const HANDLE handle = handle_of(descriptor);
  FILE_END_OF_FILE_INFO end;
  end.EndOfFile.QuadPart = static_cast<LONGLONG>(size);
  return SetFileInformationByHandle(handle, FileEndOfFileInfo, &end, sizeof end) != 0;
}

bool close_file(int descriptor) { return _close(descriptor) == 0; }

void remove_file(const std::string &path) { DeleteFileA(path.c_str()); }

int descriptor_of(std::FILE *stream) { return _fileno(stream); }

bool is_terminal(int descriptor) { return _isatty(descriptor) != 0; }

bool fill_with_random_bytes(void *bytes, std::size_t size) {
  std::string filled;
  while (filled.size() < size) {
    unsigned word = 0;
    if (rand_s(&word) != 0) return false;
    filled.append(reinterpret_cast<const char *>(&word), sizeof word);
  }
  std::memcpy(bytes, filled.data(), size);
  return true;
}

void set_environment(const std::string &name, const std::string &value) { _putenv((name + "=" + value).c_str()); }

} // namespace cubenet
