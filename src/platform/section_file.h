#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace velumar {

// Upper and lower case of a to z are one, in names as in a registry.
struct CaselessLess {
  using is_transparent = void;
  bool operator()(std::string_view left, std::string_view right) const;
};

using SectionEntries = std::map<std::string, std::string, CaselessLess>;
using Sections = std::map<std::string, SectionEntries, CaselessLess>;

// A text file of sections with entries, one store per user:
//
//   [Settings]
//   LastPath=C:\\Prices\\Daily
//
// "\\" stands for a backslash, "\n", "\r" and "\0" for those characters and "\=" for an equals sign
// in a name, so every text comes back as it was. A person may edit the file; lines that are empty
// or begin with "#" are passed over.
//
// Several processes may use one file: each look reads it again when another has changed it, and a
// change takes in what others wrote. It's written to a new file which then replaces the old, so
// that neither a crash nor a full disk harms what stood there. A file that can't be read or isn't
// of this form is renamed to "NAME.damaged-1" (-2, ...) and reported, never written over.
class SectionFile {
 public:
  // Reads the file at once. It and its folder needn't exist.
  explicit SectionFile(std::filesystem::path file);

  // Valid until the next call.
  const Sections& Current();
  // Throws std::system_error naming the file when it can't be written; nothing has changed then.
  void Change(const std::function<void(Sections&)>& change);
  // Whether a damaged file stands in the way because it couldn't be renamed. Nothing can be changed
  // until it's gone.
  bool Blocked() const { return blocked_; }

  const std::filesystem::path& File() const { return file_; }
  // What went wrong with the file since the last call, in sentences for a person.
  std::vector<std::string> TakeProblems();

 private:
  struct Stamp {
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    std::int64_t seconds = 0;
    std::int64_t nanoseconds = 0;
    std::int64_t size = -1;  // no file
    bool operator==(const Stamp&) const = default;
  };

  Stamp StampOnDisk() const;
  void Load();
  void KeepAside(const std::string& why);
  void Write(const Sections& sections);

  std::filesystem::path file_;
  Sections sections_;
  Stamp stamp_;
  bool blocked_ = false;
  std::vector<std::string> problems_;
};

}  // namespace velumar
