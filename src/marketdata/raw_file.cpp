#include "marketdata/raw_file.h"

#include <cerrno>
#include <chrono>
#include <utility>

#include "base/links.h"
#include "marketdata/file_error.h"

namespace velumar {

bool FileStamp::IsSettled() const {
  constexpr std::chrono::milliseconds kLongestTick{20};
  const std::chrono::nanoseconds changed(changed_ns);
  return std::chrono::system_clock::now().time_since_epoch() - changed > kLongestTick;
}

RawFile RawFile::OpenUnlinked(const std::filesystem::path& path, Mode mode) {
  if (IsLink(path)) ThrowWriteFailed(path, ELOOP);
  return RawFile(path, mode);
}

RawFile::RawFile(RawFile&& other) noexcept
    : path_(std::move(other.path_)), handle_(std::exchange(other.handle_, -1)) {}

RawFile& RawFile::operator=(RawFile&& other) noexcept {
  std::swap(path_, other.path_);
  std::swap(handle_, other.handle_);
  return *this;
}

}  // namespace velumar
