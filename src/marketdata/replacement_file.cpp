#include "marketdata/replacement_file.h"

#include <system_error>
#include <utility>

namespace velumar {

namespace {

std::filesystem::path BesideName(std::filesystem::path target) { return target += ".new"; }

}  // namespace

ReplacementFile::ReplacementFile(const std::filesystem::path& target)
    : target_(target), file_(BesideName(target), RawFile::Mode::kRenew) {}

ReplacementFile::~ReplacementFile() {
  std::error_code ignored;
  if (pending_) std::filesystem::remove(file_.Path(), ignored);
}

ReplacementFile::ReplacementFile(ReplacementFile&& other) noexcept
    : target_(std::move(other.target_)),
      file_(std::move(other.file_)),
      pending_(std::exchange(other.pending_, false)) {}

RawFile ReplacementFile::Commit() {
  file_.RenameTo(target_);
  pending_ = false;
  return std::move(file_);
}

}  // namespace velumar
