#include "platform/whole_file.h"

#include <chrono>
#include <system_error>
#include <thread>

#include "base/paths.h"
#include "base/windows_text.h"
#include "platform/windows/handle.h"

namespace velumar {

namespace fs = std::filesystem;

namespace {

constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

[[noreturn]] void Fail(DWORD code, const fs::path& file, const std::string& what) {
  throw std::system_error(ErrorNumber(code), std::generic_category(), PathText(file) + " " + what);
}

NativeHandle OpenOrFail(const fs::path& file, DWORD access, DWORD disposition,
                        const std::string& what) {
  NativeHandle handle = OwnedHandle(::CreateFileW(file.c_str(), access, kShareAll, nullptr,
                                                  disposition, FILE_ATTRIBUTE_NORMAL, nullptr));
  if (!handle) Fail(::GetLastError(), file, what);
  return handle;
}

void MakeFolders(const fs::path& folder) {
  if (folder.empty() || fs::is_directory(folder)) return;
  MakeFolders(folder.parent_path());
  const bool made = ::CreateDirectoryW(folder.c_str(), nullptr) != 0;
  if (!made && ::GetLastError() != ERROR_ALREADY_EXISTS) {
    Fail(::GetLastError(), folder, "can't be made");
  }
}

void WriteToDisk(const fs::path& file, std::string_view bytes) {
  const NativeHandle handle = OpenOrFail(file, GENERIC_WRITE, CREATE_ALWAYS, "can't be written");
  DWORD written = 0;
  const bool whole = ::WriteFile(handle.get(), bytes.data(), static_cast<DWORD>(bytes.size()),
                                 &written, nullptr) != 0 &&
                     written == bytes.size();
  if (!whole || ::FlushFileBuffers(handle.get()) == 0) {
    Fail(::GetLastError(), file, "can't be written");
  }
}

// Another process may be reading the old file just now: it is done in a moment.
bool MoveOver(const fs::path& from, const fs::path& to) {
  constexpr int kTries = 50;
  for (int tries = 1; tries < kTries; ++tries) {
    if (::MoveFileExW(from.c_str(), to.c_str(),
                      MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) != 0) {
      return true;
    }
    const DWORD code = ::GetLastError();
    if (code != ERROR_ACCESS_DENIED && code != ERROR_SHARING_VIOLATION) return false;
    ::Sleep(2);
  }
  return false;
}

std::int64_t Wide(DWORD high, DWORD low) {
  return static_cast<std::int64_t>((std::uint64_t{high} << 32) | low);
}

}  // namespace

std::string ReadWholeFile(const fs::path& file) {
  const NativeHandle handle = OpenOrFail(file, GENERIC_READ, OPEN_EXISTING, "can't be read");
  std::string bytes;
  std::string block(16384, '\0');
  DWORD read = 0;
  do {
    if (::ReadFile(handle.get(), block.data(), static_cast<DWORD>(block.size()), &read, nullptr) ==
        0) {
      Fail(::GetLastError(), file, "can't be read");
    }
    bytes.append(block.data(), read);
  } while (read > 0);
  return bytes;
}

void ReplaceWholeFile(const fs::path& file, std::string_view bytes) {
  const fs::path target = fs::weakly_canonical(file);
  MakeFolders(target.parent_path());
  // A file that the user has forbidden to write isn't replaced either.
  const DWORD attributes = ::GetFileAttributesW(target.c_str());
  if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY) != 0) {
    Fail(ERROR_ACCESS_DENIED, file, "can't be written");
  }
  fs::path fresh = target;
  fresh += ".new";
  try {
    WriteToDisk(fresh, bytes);
    if (!MoveOver(fresh, target)) Fail(::GetLastError(), file, "can't be replaced");
  } catch (const std::system_error&) {
    ::DeleteFileW(fresh.c_str());
    throw;
  }
}

struct FileLock::Held {
  NativeHandle handle;
};

FileLock::FileLock(const fs::path& file) : held_(std::make_unique<Held>()) {
  using Clock = std::chrono::steady_clock;
  MakeFolders(file.parent_path());
  held_->handle = OpenOrFail(file, GENERIC_READ | GENERIC_WRITE, OPEN_ALWAYS, "can't be written");
  const auto end = Clock::now() + std::chrono::seconds(5);
  OVERLAPPED start{};
  while (::LockFileEx(held_->handle.get(), LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY, 0,
                      1, 0, &start) == 0) {
    const DWORD code = ::GetLastError();
    if (code == ERROR_INVALID_FUNCTION || code == ERROR_NOT_SUPPORTED) return;
    if (code != ERROR_LOCK_VIOLATION && code != ERROR_IO_PENDING) {
      Fail(code, file, "can't be locked");
    }
    if (Clock::now() >= end) Fail(ERROR_LOCK_VIOLATION, file, "is locked by another program");
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
}

FileLock::~FileLock() = default;

FileState StateOf(const fs::path& file) {
  const NativeHandle handle =
      OwnedHandle(::CreateFileW(file.c_str(), FILE_READ_ATTRIBUTES, kShareAll, nullptr,
                                OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
  BY_HANDLE_FILE_INFORMATION info{};
  if (!handle || ::GetFileInformationByHandle(handle.get(), &info) == 0) return {};
  constexpr std::int64_t kTicksPerSecond = 10'000'000;
  const std::int64_t ticks =
      Wide(info.ftLastWriteTime.dwHighDateTime, info.ftLastWriteTime.dwLowDateTime);
  return {.device = info.dwVolumeSerialNumber,
          .inode = static_cast<std::uint64_t>(Wide(info.nFileIndexHigh, info.nFileIndexLow)),
          .seconds = ticks / kTicksPerSecond,
          .nanoseconds = ticks % kTicksPerSecond * 100,
          .size = Wide(info.nFileSizeHigh, info.nFileSizeLow)};
}

}  // namespace velumar
