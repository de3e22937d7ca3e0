#include <windows.h>

#include "base/links.h"

namespace velumar {

// Files kept in a cloud are reparse points too; only those that stand for another name are links.
bool IsLink(const std::filesystem::path& path) {
  constexpr DWORD kStandsForAnotherName = 0x20000000;
  WIN32_FIND_DATAW found{};
  const HANDLE search = ::FindFirstFileW(path.c_str(), &found);
  if (search == INVALID_HANDLE_VALUE) return false;
  ::FindClose(search);
  return (found.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0 &&
         (found.dwReserved0 & kStandsForAnotherName) != 0;
}

}  // namespace velumar
