#include <io.h>
#include <windows.h>

#include "base/windows_text.h"
#include "marketdata/directory_lock.h"
#include "marketdata/metalib_error.h"

namespace velumar {

namespace {

// A lock keeps others from reading the locked bytes, so it is on one far after the end of the file:
// the folder can still be copied.
bool LockByte(const RawFile& file, DWORD kind) {
  OVERLAPPED place{};
  place.OffsetHigh = 0x40000000;
  const auto handle = reinterpret_cast<HANDLE>(_get_osfhandle(file.Handle()));
  return ::LockFileEx(handle, kind | LOCKFILE_FAIL_IMMEDIATELY, 0, 1, 0, &place) != 0;
}

bool HeldByAnother(DWORD code) { return code == ERROR_LOCK_VIOLATION || code == ERROR_IO_PENDING; }

}  // namespace

std::optional<DirectoryLock> DirectoryLock::TryHold(const std::filesystem::path& directory,
                                                    std::string_view file_name) {
  constexpr int kTries = 10;
  constexpr DWORD kBetweenTriesMs = 2;
  RawFile file =
      RawFile::OpenUnlinked(directory / file_name, RawFile::Mode::kCreate, ThrowMarketFileError);
  // IsHeld in another process takes the lock for a moment.
  for (int tries = 0; tries < kTries; ++tries) {
    if (LockByte(file, LOCKFILE_EXCLUSIVE_LOCK)) return DirectoryLock(std::move(file));
    const DWORD code = ::GetLastError();
    if (!HeldByAnother(code)) ThrowMarketFileError(file.Path(), kCantWrite, ErrorNumber(code));
    ::Sleep(kBetweenTriesMs);
  }
  return std::nullopt;
}

bool DirectoryLock::IsHeld(const std::filesystem::path& directory) {
  if (!StampOf(directory / kFileName)) return false;
  const RawFile file(directory / kFileName, RawFile::Mode::kRead, ThrowMarketFileError);
  constexpr DWORD kShared = 0;
  if (LockByte(file, kShared)) return false;
  const DWORD code = ::GetLastError();
  if (!HeldByAnother(code)) ThrowMarketFileError(file.Path(), kCantRead, ErrorNumber(code));
  return true;
}

}  // namespace velumar
