#include "platform/section_file.h"

#include <sys/stat.h>

#include <cerrno>
#include <exception>
#include <system_error>
#include <utility>

#include "platform/posix_file.h"

namespace velumar {

namespace fs = std::filesystem;

namespace {

fs::path WithEnding(const fs::path& file, const std::string& ending) {
  fs::path other = file;
  other += ending;
  return other;
}

fs::path FreeNameAside(const fs::path& file) {
  int number = 1;
  fs::path aside;
  do {
    aside = WithEnding(file, ".damaged-" + std::to_string(number++));
  } while (fs::exists(fs::symlink_status(aside)));
  return aside;
}

}  // namespace

SectionFile::SectionFile(fs::path file) : file_(std::move(file)) { Refresh(); }

const Sections& SectionFile::Current() {
  Refresh();
  return sections_;
}

bool SectionFile::Blocked() {
  Refresh();
  return blocked_;
}

void SectionFile::Change(const std::function<void(Sections&)>& change) {
  const FileLock lock(WithEnding(file_, ".lock"));
  Refresh();
  if (blocked_) {
    throw std::system_error(EBUSY, std::generic_category(),
                            file_.string() + " is damaged and can't be put aside");
  }
  Sections changed = sections_;
  change(changed);
  if (changed == sections_) return;
  ReplaceFile(file_, FormatSections(changed));
  sections_ = std::move(changed);
  stamp_ = StampOnDisk();
}

std::vector<std::string> SectionFile::TakeProblems() { return std::exchange(problems_, {}); }

SectionFile::Stamp SectionFile::StampOnDisk() const {
  struct stat status {};
  if (::stat(file_.c_str(), &status) != 0) return {};
  return {status.st_dev, status.st_ino, status.st_mtim.tv_sec, status.st_mtim.tv_nsec,
          status.st_size};
}

void SectionFile::Refresh() {
  const Stamp stamp = StampOnDisk();
  if (stamp != stamp_) Load(stamp);
}

// A change between the stamp and the reading is seen by the next look, since its stamp differs.
void SectionFile::Load(const Stamp& stamp) {
  blocked_ = false;
  stamp_ = stamp;
  sections_.clear();
  if (stamp.size == kNoFile) return;
  try {
    sections_ = ParseSections(ReadWholeFile(file_));
  } catch (const std::system_error& error) {
    // Another process may have put it aside just now.
    if (error.code() == std::errc::no_such_file_or_directory) return;
    blocked_ = !KeepAside(error.code().message());
  } catch (const std::invalid_argument& error) {
    blocked_ = !KeepAside(error.what());
  }
}

bool SectionFile::KeepAside(const std::string& why) {
  // Another process may have put it aside and begun a sound one.
  if (StampOnDisk() != stamp_) return true;
  const fs::path aside = FreeNameAside(file_);
  std::error_code error;
  fs::rename(file_, aside, error);
  if (error) {
    problems_.push_back(file_.string() + " can't be read (" + why + ") and can't be renamed (" +
                        error.message() + "). Until it's gone, nothing is saved to it.");
    return false;
  }
  problems_.push_back(file_.string() + " can't be read (" + why + "). It was kept as " +
                      aside.filename().string() + ", and a new one begins.");
  stamp_ = {};
  return true;
}

}  // namespace velumar
