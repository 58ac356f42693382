// Temporary files on Windows. Each is marked for deletion with its last handle until it is kept, so it never
// outlives the process.
#include "util/temporary_file.h"

#include <array>

#include <fcntl.h>
#include <io.h>
#include <windows.h>

namespace cubenet {
namespace {

bool set_deleted(int descriptor, bool deleted) {
  FILE_DISPOSITION_INFO disposition;
  disposition.DeleteFile = deleted;
  const HANDLE handle = reinterpret_cast<HANDLE>(_get_osfhandle(descriptor));
  return SetFileInformationByHandle(handle, FileDispositionInfo, &disposition, sizeof disposition) != 0;
}

bool is_link(const std::string &path) {
  const DWORD attributes = GetFileAttributesA(path.c_str());
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
}

// The name of a file with all links resolved; empty if it has none in the system's code page.
std::string final_name(const std::string &path) {
  constexpr DWORD kShare = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
  const HANDLE handle = CreateFileA(path.c_str(), 0, kShare, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (handle == INVALID_HANDLE_VALUE) return {};
  std::array<char, 4096> name;
  const DWORD length = GetFinalPathNameByHandleA(handle, name.data(), name.size(), FILE_NAME_NORMALIZED);
  CloseHandle(handle);
  FileStatus named, final;
  const std::string found(name.data(), length < name.size() ? length : 0);
  const bool is_same = find_file(path, named) && find_file(found, final) && named.identity == final.identity;
  return is_same ? found : std::string();
}

} // namespace

std::string follow_links(const std::string &path) {
  const std::string name = final_name(path);
  return name.empty() && !is_link(path) ? path : name;
}

int make_temporary(const std::string &path, const FileStatus *, std::string &name) {
  name.insert(0, path, 0, path.find_last_of("/\\:") + 1);
  constexpr DWORD kShare = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
  const HANDLE handle =
      CreateFileA(name.c_str(), GENERIC_WRITE | DELETE, kShare, nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (handle == INVALID_HANDLE_VALUE) return -1;
  const int descriptor = _open_osfhandle(reinterpret_cast<std::intptr_t>(handle), _O_BINARY | _O_NOINHERIT);
  if (descriptor < 0) {
    CloseHandle(handle);
    DeleteFileA(name.c_str());
  } else {
    static_cast<void>(set_deleted(descriptor, true)); // otherwise it is deleted by name
  }
  return descriptor;
}

bool keep_temporary(int descriptor, const std::string &name, const std::string &path) {
  const bool stays = set_deleted(descriptor, false);
  const bool kept = close_file(descriptor) && stays &&
                    (MoveFileExA(name.c_str(), path.c_str(), MOVEFILE_REPLACE_EXISTING) != 0 ||
                     CopyFileA(name.c_str(), path.c_str(), FALSE) != 0);
  DeleteFileA(name.c_str());
  return kept;
}

void drop_temporary(int descriptor, const std::string &name) {
  static_cast<void>(close_file(descriptor));
  DeleteFileA(name.c_str());
}

} // namespace cubenet
