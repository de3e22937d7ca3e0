#include <windows.h>

#include <memory>

#include "base/windows_text.h"
#include "ledger/file_identity.h"

namespace velumar {

namespace {

struct CloseFile {
  using pointer = HANDLE;
  void operator()(HANDLE handle) const { ::CloseHandle(handle); }
};

std::uint64_t Wide(DWORD high, DWORD low) { return (std::uint64_t{high} << 32) | low; }

}  // namespace

// On Windows locks belong to a handle, so opening another one is harmless.
FileIdentity IdentityOf(const std::string& path) {
  const HANDLE opened = ::CreateFileW(WideText(path).c_str(), FILE_READ_ATTRIBUTES,
                                      FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                      nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
  if (opened == INVALID_HANDLE_VALUE) return {};
  const std::unique_ptr<HANDLE, CloseFile> handle(opened);
  BY_HANDLE_FILE_INFORMATION info{};
  if (::GetFileType(opened) != FILE_TYPE_DISK || ::GetFileInformationByHandle(opened, &info) == 0 ||
      (info.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0) {
    return {.kind = FileIdentity::Kind::kOther};
  }
  return {.kind = FileIdentity::Kind::kRegular,
          .volume = info.dwVolumeSerialNumber,
          .number = Wide(info.nFileIndexHigh, info.nFileIndexLow),
          .links = info.nNumberOfLinks,
          .size = Wide(info.nFileSizeHigh, info.nFileSizeLow),
          .changed = static_cast<std::int64_t>(
              Wide(info.ftLastWriteTime.dwHighDateTime, info.ftLastWriteTime.dwLowDateTime))};
}

}  // namespace velumar
