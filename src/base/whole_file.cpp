#include "base/whole_file.h"

#include <array>
#include <cerrno>
#include <random>
#include <utility>

namespace velumar {

namespace fs = std::filesystem;

namespace {

void RequireSize(const fs::path& file, std::uintmax_t size, std::size_t limit) {
  if (size <= limit) return;
  throw FileError(file, kCantRead, EFBIG,
                  "it holds " + std::to_string(size) + " bytes, more than the limit of " +
                      std::to_string(limit) + " bytes");
}

void RequireReplaceable(const fs::path& file, const fs::file_status& status) {
  if (!fs::exists(status)) return;
  if (fs::is_directory(status)) throw FileError(file, kCantWrite, EISDIR);
  if (!fs::is_regular_file(status)) throw FileError(file, kCantWrite, ENOTSUP);
  // A rename would succeed even so.
  if (!IsWritable(file)) throw FileError(file, kCantWrite, EACCES);
}

RawFile NewFile(const fs::path& draft, FileAccess access, FileFailure fail) {
  std::error_code none;
  fs::remove(draft, none);
  const bool usual = access == FileAccess::kUsual;
  return RawFile(draft, usual ? RawFile::Mode::kNew : RawFile::Mode::kNewPrivate, fail);
}

fs::path RandomName(const fs::path& folder) {
  std::random_device random;
  return folder / (".velumar-" + std::to_string(random()) + std::to_string(random()));
}

}  // namespace

std::string ReadWholeFile(const fs::path& file, std::size_t limit) {
  const RawFile in(file, RawFile::Mode::kRead);
  const auto size = static_cast<std::size_t>(in.Size());
  RequireSize(file, size, limit);
  std::string bytes;
  bytes.reserve(size);
  std::array<char, 65536> block;
  std::size_t read = 0;
  do {  // to the end, since the file may be growing
    read = in.ReadAt(static_cast<std::int64_t>(bytes.size()),
                     std::as_writable_bytes(std::span(block)));
    bytes.append(block.data(), read);
    RequireSize(file, bytes.size(), limit);
  } while (read == block.size());
  return bytes;
}

void ReplaceWholeFile(const fs::path& file, std::string_view bytes, FileAccess access) {
  try {
    const fs::path target = fs::weakly_canonical(file);
    const fs::file_status old = fs::status(target);
    RequireReplaceable(target, old);
    const fs::path draft = RandomName(target.parent_path());
    FileReplacement fresh(target, draft, access);
    std::error_code ignored;  // a file system without permissions
    if (access == FileAccess::kUsual && fs::exists(old)) {
      fs::permissions(draft, old.permissions(), ignored);
    }
    fresh.Write(std::as_bytes(std::span(bytes)));
    fresh.Flush();
    fresh.Commit();
    FlushFolder(target.parent_path());
  } catch (const std::system_error& error) {
    throw FileError(file, kCantWrite, error.code().default_error_condition().value());
  }
}

FileReplacement::FileReplacement(const fs::path& target, const fs::path& draft, FileAccess access,
                                 FileFailure fail)
    : target_(target), file_(NewFile(draft, access, fail)) {}

FileReplacement::~FileReplacement() {
  std::error_code ignored;
  if (pending_) fs::remove(file_.Path(), ignored);
}

FileReplacement::FileReplacement(FileReplacement&& other) noexcept
    : target_(std::move(other.target_)),
      file_(std::move(other.file_)),
      pending_(std::exchange(other.pending_, false)) {}

RawFile FileReplacement::Commit() {
  file_.RenameTo(target_);
  pending_ = false;
  return std::move(file_);
}

}  // namespace velumar
