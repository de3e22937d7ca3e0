#include "base/raw_file.h"

#include <cerrno>
#include <chrono>
#include <utility>

#include "base/paths.h"

namespace velumar {

namespace fs = std::filesystem;

namespace {

std::string ReasonOf(int error) {
  if (error == EISDIR) return "it is a folder, not a file";
  if (error == ENOTSUP) return "it is a pipe or a device, not a file";
  return std::generic_category().message(error);
}

}  // namespace

FileError::FileError(const fs::path& file, std::string_view failure, int error)
    : FileError(file, failure, error, ReasonOf(error)) {}

FileError::FileError(const fs::path& file, std::string_view failure, int error, std::string reason)
    : std::system_error(error, std::generic_category()),
      reason_(std::move(reason)),
      text_(PathText(file) + " " + std::string(failure) + ": " + reason_) {}

void ThrowFileError(const fs::path& file, std::string_view failure, int error) {
  throw FileError(file, failure, error);
}

bool FileStamp::IsSettled() const {
  constexpr std::chrono::milliseconds kLongestTick{20};
  const std::chrono::nanoseconds changed(changed_ns);
  return std::chrono::system_clock::now().time_since_epoch() - changed > kLongestTick;
}

RawFile RawFile::OpenUnlinked(const fs::path& path, Mode mode, FileFailure fail) {
  if (IsLink(path)) fail(path, kCantWrite, ELOOP);
  return RawFile(path, mode, fail);
}

RawFile::RawFile(RawFile&& other) noexcept
    : path_(std::move(other.path_)),
      fail_(other.fail_),
      handle_(std::exchange(other.handle_, -1)) {}

RawFile& RawFile::operator=(RawFile&& other) noexcept {
  std::swap(path_, other.path_);
  std::swap(fail_, other.fail_);
  std::swap(handle_, other.handle_);
  return *this;
}

}  // namespace velumar
