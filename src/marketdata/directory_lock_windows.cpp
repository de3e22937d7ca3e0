#include <io.h>
#include <windows.h>

#include <cerrno>

#include "base/links.h"
#include "base/windows_text.h"
#include "marketdata/directory_lock.h"
#include "marketdata/file_error.h"

namespace velumar {

namespace {

// Locks keep others from the bytes themselves here, so the byte lies far behind the end of the
// file: whoever copies the folder can read it all the same.
bool LockByte(const RawFile& file, DWORD kind) {
  OVERLAPPED place{};
  place.OffsetHigh = 0x40000000;
  const auto handle = reinterpret_cast<HANDLE>(_get_osfhandle(file.Handle()));
  return ::LockFileEx(handle, kind | LOCKFILE_FAIL_IMMEDIATELY, 0, 1, 0, &place) != 0;
}

bool HeldByAnother(DWORD code) { return code == ERROR_LOCK_VIOLATION || code == ERROR_IO_PENDING; }

RawFile OpenLockFile(const std::filesystem::path& path) {
  if (IsLink(path)) ThrowWriteFailed(path, ELOOP);
  return RawFile(path, RawFile::Mode::kCreate);
}

}  // namespace

std::optional<DirectoryLock> DirectoryLock::TryHold(const std::filesystem::path& directory,
                                                    std::string_view file_name) {
  constexpr int kTries = 10;
  constexpr DWORD kBetweenTriesMs = 2;
  RawFile file = OpenLockFile(directory / file_name);
  // Who only asks whether it is held has it for a moment.
  for (int tries = 0; tries < kTries; ++tries) {
    if (LockByte(file, LOCKFILE_EXCLUSIVE_LOCK)) return DirectoryLock(std::move(file));
    const DWORD code = ::GetLastError();
    if (!HeldByAnother(code)) ThrowWriteFailed(file.Path(), ErrorNumber(code));
    ::Sleep(kBetweenTriesMs);
  }
  return std::nullopt;
}

bool DirectoryLock::IsHeld(const std::filesystem::path& directory) {
  if (!StampOf(directory / kFileName)) return false;
  const RawFile file(directory / kFileName, RawFile::Mode::kRead);
  constexpr DWORD kShared = 0;
  if (LockByte(file, kShared)) return false;
  const DWORD code = ::GetLastError();
  if (!HeldByAnother(code)) ThrowReadFailed(file.Path(), ErrorNumber(code));
  return true;
}

void DirectoryLock::Write(ByteView contents) {
  file_.WriteAt(0, contents);
  file_.Truncate(static_cast<std::int64_t>(contents.size()));
}

}  // namespace velumar
