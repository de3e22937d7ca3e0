#include <windows.h>

#include <array>
#include <system_error>

#include "base/paths.h"
#include "base/windows_text.h"
#include "session/store_system.h"

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

std::string ThisProgram() {
  std::array<wchar_t, 1024> file{};
  ::GetModuleFileNameW(nullptr, file.data(), static_cast<DWORD>(file.size() - 1));
  return PathText(std::filesystem::path(file.data()).stem()) + " (process " +
         std::to_string(::GetCurrentProcessId()) + ")";
}

}  // namespace velumar
