#include "platform/file_lock.h"

#include <chrono>
#include <string>
#include <system_error>
#include <thread>
#include <utility>

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

std::int64_t Wide(DWORD high, DWORD low) {
  return static_cast<std::int64_t>((std::uint64_t{high} << 32) | low);
}

// One that may only be read can be locked as well.
NativeHandle OpenLock(const fs::path& file) {
  const auto open = [&file](DWORD access, DWORD disposition) {
    return OwnedHandle(::CreateFileW(file.c_str(), access, kShareAll, nullptr, disposition,
                                     FILE_ATTRIBUTE_NORMAL, nullptr));
  };
  NativeHandle opened = open(GENERIC_READ | GENERIC_WRITE, OPEN_ALWAYS);
  if (!opened) opened = open(GENERIC_READ, OPEN_EXISTING);
  return opened && ::GetFileType(opened.get()) == FILE_TYPE_DISK ? std::move(opened)
                                                                 : NativeHandle();
}

}  // namespace

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

struct ProcessLock::Handle {
  NativeHandle handle;
};

ProcessLock::ProcessLock(const fs::path& file) : file_(file), handle_(std::make_unique<Handle>()) {
  NativeHandle opened = OpenLock(file);
  if (!opened) return;
  OVERLAPPED start{};
  if (::LockFileEx(opened.get(), LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY, 0, 1, 0,
                   &start) == 0) {
    const DWORD code = ::GetLastError();
    const bool taken = code == ERROR_LOCK_VIOLATION || code == ERROR_IO_PENDING;
    if (taken) state_ = State::kHeldByAnother;
    return;
  }
  handle_->handle = std::move(opened);
  state_ = State::kHeld;
}

ProcessLock::~ProcessLock() { Release(); }

// The file goes when its last handle is closed.
void ProcessLock::Release() {
  if (state_ == State::kHeld) ::DeleteFileW(file_.c_str());
  handle_->handle.reset();
  state_ = State::kImpossible;
}

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
