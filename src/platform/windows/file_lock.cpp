#include "platform/file_lock.h"

#include <utility>

#include "base/handle_windows.h"

namespace velumar {

namespace fs = std::filesystem;

namespace {

constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

// A file that may only be read can be locked too.
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

struct FileLock::Handle {
  NativeHandle handle;
};

FileLock::FileLock(fs::path file) : file_(std::move(file)), handle_(std::make_unique<Handle>()) {
  NativeHandle opened = OpenLock(file_);
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

FileLock::FileLock(FileLock&&) noexcept = default;

FileLock::~FileLock() = default;

// The file disappears when its last handle is closed.
void FileLock::Remove() {
  if (state_ == State::kHeld) ::DeleteFileW(file_.c_str());
  handle_->handle.reset();
  state_ = State::kImpossible;
}

}  // namespace velumar
