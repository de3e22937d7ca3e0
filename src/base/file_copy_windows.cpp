#include "base/file_copy.h"

#include <windows.h>

#include <system_error>

#include "base/windows_text.h"

namespace velumar {

namespace {

void AllowWriting(const std::filesystem::path& file) {
  const DWORD attributes = ::GetFileAttributesW(file.c_str());
  if (attributes != INVALID_FILE_ATTRIBUTES) {
    ::SetFileAttributesW(file.c_str(), attributes & ~DWORD{FILE_ATTRIBUTE_READONLY});
  }
}

}  // namespace

void CopyWritable(const std::filesystem::path& from, const std::filesystem::path& to) {
  AllowWriting(to);
  constexpr BOOL kFailIfThere = FALSE;
  if (::CopyFileW(from.c_str(), to.c_str(), kFailIfThere) == 0) {
    const std::error_code reason(ErrorNumber(::GetLastError()), std::generic_category());
    throw std::filesystem::filesystem_error("can't copy", from, to, reason);
  }
  AllowWriting(to);
}

}  // namespace velumar
