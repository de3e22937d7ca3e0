#include <fcntl.h>
#include <io.h>
#include <windows.h>

#include <atomic>
#include <cerrno>
#include <cstring>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "base/handle_windows.h"
#include "base/raw_file.h"
#include "base/windows_text.h"

namespace velumar {

namespace {

// Others can still read, write and replace a file that is open here.
constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

std::int64_t Nanoseconds(const FILETIME& time) {
  constexpr std::int64_t kUnixEpoch = 116'444'736'000'000'000;  // in 100 nanoseconds since 1601
  const auto ticks =
      static_cast<std::int64_t>((std::uint64_t{time.dwHighDateTime} << 32) | time.dwLowDateTime);
  return (ticks - kUnixEpoch) * 100;
}

FILETIME Now() {
  FILETIME now{};
  ::GetSystemTimePreciseAsFileTime(&now);
  return now;
}

HANDLE Native(int handle) {
  return reinterpret_cast<HANDLE>(_get_osfhandle(handle));  // NOLINT: what the runtime gives
}

std::optional<FileStamp> StampFrom(HANDLE handle) {
  BY_HANDLE_FILE_INFORMATION info{};
  if (::GetFileInformationByHandle(handle, &info) == 0) return std::nullopt;
  return FileStamp{.device = info.dwVolumeSerialNumber,
                   .inode = (std::uint64_t{info.nFileIndexHigh} << 32) | info.nFileIndexLow,
                   .size = static_cast<std::int64_t>((std::uint64_t{info.nFileSizeHigh} << 32) |
                                                     info.nFileSizeLow),
                   .changed_ns = Nanoseconds(info.ftLastWriteTime)};
}

DWORD Disposition(RawFile::Mode mode) {
  switch (mode) {
    case RawFile::Mode::kCreate:
      return OPEN_ALWAYS;
    case RawFile::Mode::kRenew:
      return CREATE_ALWAYS;
    case RawFile::Mode::kNew:
      return CREATE_NEW;
    default:
      return OPEN_EXISTING;
  }
}

DWORD Access(RawFile::Mode mode) {
  if (mode == RawFile::Mode::kRead) return GENERIC_READ;
  const DWORD change = GENERIC_READ | GENERIC_WRITE;
  // A file can only be renamed through a handle that may also delete it.
  return Disposition(mode) == CREATE_NEW ? change | DELETE : change;
}

int Open(const std::filesystem::path& path, RawFile::Mode mode) {
  NativeHandle handle =
      OwnedHandle(::CreateFileW(path.c_str(), Access(mode), kShareAll, nullptr, Disposition(mode),
                                FILE_ATTRIBUTE_NORMAL, nullptr));
  if (!handle) {
    const DWORD code = ::GetLastError();
    const DWORD attributes = ::GetFileAttributesW(path.c_str());
    const bool folder =
        attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
    errno = folder ? EISDIR : ErrorNumber(code);
    ::SetLastError(code);
    return -1;
  }
  if (::GetFileType(handle.get()) != FILE_TYPE_DISK) {
    errno = ENOTSUP;
    return -1;
  }
  return _open_osfhandle(reinterpret_cast<std::intptr_t>(handle.release()), _O_BINARY);
}

OVERLAPPED At(std::int64_t offset) {
  OVERLAPPED place{};
  place.Offset = static_cast<DWORD>(offset);
  place.OffsetHigh = static_cast<DWORD>(static_cast<std::uint64_t>(offset) >> 32);
  return place;
}

constexpr DWORD kReplaceAsPosix = 0x1 | 0x2;
constexpr DWORD kReplaceReadOnly = 0x40;  // not before Windows 10 1809

bool RenameByHandle(HANDLE handle, const std::filesystem::path& target, DWORD flags) {
  constexpr auto kRenameInfoEx = static_cast<FILE_INFO_BY_HANDLE_CLASS>(22);
  const std::wstring name = std::filesystem::absolute(target).wstring();
  const std::size_t name_bytes = name.size() * sizeof(wchar_t);
  std::vector<std::byte> buffer(sizeof(FILE_RENAME_INFO) + name_bytes);
  auto& info = *reinterpret_cast<FILE_RENAME_INFO*>(buffer.data());
  std::memcpy(&info, &flags, sizeof flags);
  info.FileNameLength = static_cast<DWORD>(name_bytes);
  std::memcpy(info.FileName, name.data(), name_bytes);
  return ::SetFileInformationByHandle(handle, kRenameInfoEx, &info,
                                      static_cast<DWORD>(buffer.size())) != 0;
}

// Replaces a file that others may have open: they keep the old one. Data copied from a disc is
// read-only.
bool RenameUnderReaders(HANDLE handle, const std::filesystem::path& target) {
  return RenameByHandle(handle, target, kReplaceAsPosix | kReplaceReadOnly) ||
         RenameByHandle(handle, target, kReplaceAsPosix);
}

bool Move(const std::filesystem::path& from, const std::filesystem::path& to) {
  return ::MoveFileExW(from.c_str(), to.c_str(),
                       MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) != 0;
}

// An unused name in the folder.
std::filesystem::path NameAside(const std::filesystem::path& folder) {
  static std::atomic<unsigned> count = 0;
  return folder / (".velumar.old-" + std::to_string(::GetCurrentProcessId()) + "-" +
                   std::to_string(++count));
}

// For disks without POSIX renames. A file that somebody has open is renamed first and deleted when
// the last one closes it.
bool RenameByMoving(const std::filesystem::path& from, const std::filesystem::path& to) {
  if (Move(from, to)) return true;
  const DWORD code = ::GetLastError();
  const std::filesystem::path aside = NameAside(to.parent_path());
  if (!Move(to, aside)) {
    ::SetLastError(code);
    return false;
  }
  if (Move(from, to)) {
    // A read-only file can be moved, but not deleted.
    ::SetFileAttributesW(aside.c_str(), FILE_ATTRIBUTE_NORMAL);
    ::DeleteFileW(aside.c_str());
    return true;
  }
  const DWORD refusal = ::GetLastError();
  Move(aside, to);
  ::SetLastError(refusal);
  return false;
}

// Another program may be reading the file, which takes it a moment.
bool Retried(const std::function<bool()>& attempt) {
  constexpr int kTries = 50;
  for (int tries = 1; !attempt(); ++tries) {
    const DWORD code = ::GetLastError();
    const bool busy = code == ERROR_ACCESS_DENIED || code == ERROR_SHARING_VIOLATION;
    if (!busy || tries == kTries) {
      ::SetLastError(code);
      return false;
    }
    ::Sleep(2);
  }
  return true;
}

}  // namespace

std::optional<FileStamp> StampOf(const std::filesystem::path& path) {
  const HANDLE handle = ::CreateFileW(path.c_str(), FILE_READ_ATTRIBUTES, kShareAll, nullptr,
                                      OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
  if (handle == INVALID_HANDLE_VALUE) return std::nullopt;
  const std::optional<FileStamp> stamp = StampFrom(handle);
  ::CloseHandle(handle);
  return stamp;
}

std::optional<FileIdentity> IdentityOf(const std::filesystem::path& path) {
  const auto stamp = StampOf(path);
  if (!stamp) return std::nullopt;
  return FileIdentity{stamp->device, stamp->inode, stamp->size};
}

// Cloud files are reparse points too; only name surrogates are links.
bool IsLink(const std::filesystem::path& path) {
  constexpr DWORD kNameSurrogate = 0x20000000;
  WIN32_FIND_DATAW found{};
  const HANDLE search = ::FindFirstFileW(path.c_str(), &found);
  if (search == INVALID_HANDLE_VALUE) return false;
  ::FindClose(search);
  return (found.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0 &&
         (found.dwReserved0 & kNameSurrogate) != 0;
}

bool IsWritable(const std::filesystem::path& file) {
  const DWORD attributes = ::GetFileAttributesW(file.c_str());
  return attributes == INVALID_FILE_ATTRIBUTES || (attributes & FILE_ATTRIBUTE_READONLY) == 0;
}

// The journal of the file system keeps renames in order.
void FlushFolder(const std::filesystem::path&) {}

RawFile::RawFile(const std::filesystem::path& path, Mode mode, FileFailure fail)
    : path_(path), fail_(fail), handle_(Open(path, mode)) {
  if (handle_ < 0) fail_(path_, mode == Mode::kRead ? kCantRead : kCantWrite, errno);
}

RawFile::~RawFile() {
  if (handle_ >= 0) _close(handle_);
}

std::size_t RawFile::ReadAt(std::int64_t offset, ByteSpan into) const {
  std::size_t done = 0;
  while (done < into.size()) {
    OVERLAPPED place = At(offset + static_cast<std::int64_t>(done));
    DWORD got = 0;
    if (::ReadFile(Native(handle_), into.data() + done, static_cast<DWORD>(into.size() - done),
                   &got, &place) == 0) {
      const DWORD code = ::GetLastError();
      if (code == ERROR_HANDLE_EOF) break;
      fail_(path_, kCantRead, ErrorNumber(code));
    }
    if (got == 0) break;
    done += got;
  }
  return done;
}

void RawFile::WriteAt(std::int64_t offset, ByteView bytes) {
  std::size_t done = 0;
  while (done < bytes.size()) {
    OVERLAPPED place = At(offset + static_cast<std::int64_t>(done));
    DWORD put = 0;
    if (::WriteFile(Native(handle_), bytes.data() + done, static_cast<DWORD>(bytes.size() - done),
                    &put, &place) == 0) {
      fail_(path_, kCantWrite, ErrorNumber(::GetLastError()));
    }
    done += put;
  }
}

void RawFile::Truncate(std::int64_t size) {
  FILE_END_OF_FILE_INFO info{};
  info.EndOfFile.QuadPart = size;
  if (::SetFileInformationByHandle(Native(handle_), FileEndOfFileInfo, &info, sizeof info) == 0) {
    fail_(path_, kCantWrite, ErrorNumber(::GetLastError()));
  }
}

void RawFile::Flush() {
  if (::FlushFileBuffers(Native(handle_)) == 0) {
    fail_(path_, kCantWrite, ErrorNumber(::GetLastError()));
  }
}

void RawFile::RenameTo(const std::filesystem::path& target) {
  const bool renamed = Retried(
      [&] { return RenameUnderReaders(Native(handle_), target) || RenameByMoving(path_, target); });
  if (!renamed) fail_(target, kCantWrite, ErrorNumber(::GetLastError()));
  // Most programs cannot open a file next to a handle that may delete it.
  _close(std::exchange(handle_, -1));
  path_ = target;
  Retried([&] { return (handle_ = Open(target, Mode::kChange)) >= 0; });
  if (handle_ < 0) fail_(target, kCantWrite, errno);
}

FileStamp RawFile::Stamp() const {
  const std::optional<FileStamp> stamp = StampFrom(Native(handle_));
  if (!stamp) fail_(path_, kCantRead, ErrorNumber(::GetLastError()));
  return *stamp;
}

void RawFile::StampNow() {
  const FILETIME now = Now();
  // On failure the file keeps the time of the change, which works too.
  ::SetFileTime(Native(handle_), nullptr, nullptr, &now);
}

}  // namespace velumar
