#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "platform/file_lock.h"
#include "platform/common/section_text.h"

namespace velumar {

// A file of sections that several processes may use at once: each look reads it again when another
// has changed it, and a change takes in what others wrote. It's written to a new file that then
// replaces the old, so neither a crash nor a full disk harms what stood there. A file that can't be
// read, is no regular file, is larger than kLargest or isn't of the form of section_text.h is
// renamed to "NAME.damaged-1" (-2, ...) and reported, never written over.
class SectionFile {
 public:
  static constexpr std::size_t kLargest = 4 << 20;  // bytes

  // Reads the file at once. It and its folder needn't exist.
  explicit SectionFile(std::filesystem::path file);

  // Valid until the next call.
  const Sections& Current();
  // Throws std::system_error naming the file when it can't be written; nothing has changed then.
  void Change(const std::function<void(Sections&)>& change);
  // Whether a damaged file stands in the way because it couldn't be renamed. Nothing can be changed
  // until it's gone.
  bool Blocked();

  const std::filesystem::path& File() const { return file_; }
  // What went wrong with the file since the last call, in sentences for a person.
  std::vector<std::string> TakeProblems();

 private:
  void Refresh();
  void Load(const FileState& stamp);
  bool KeepAside(const std::string& why);

  std::filesystem::path file_;
  Sections sections_;
  FileState stamp_;
  bool blocked_ = false;
  std::vector<std::string> problems_;
};

}  // namespace velumar
