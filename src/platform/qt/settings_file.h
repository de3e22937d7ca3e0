#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/services.h"

class QSettings;

namespace velumar {

// An INI file of texts in groups, managed by QSettings: several processes may use it at once, a
// change keeps what others wrote, and the file is replaced as a whole. A group is a path with "\"
// between its parts. Case doesn't matter in groups and names; values may hold any bytes.
//
// A file that QSettings can't parse, is larger than kLargest or isn't a regular file is renamed to
// "NAME.damaged-1" (-2, ...) and reported, never overwritten, and an empty file takes its place.
// QSettings alone would overwrite it.
class SharedIniFile {
 public:
  static constexpr std::int64_t kLargest = 4 << 20;  // bytes

  // Keeps `file` with ".ini" added. If that doesn't exist, values are imported from `file` itself,
  // which earlier versions wrote; it stays as it is. This happens once, unless the user deletes the
  // ".ini" file. Imported values that can't be saved are used until the next change saves them.
  // Nothing needs to exist.
  explicit SharedIniFile(const std::filesystem::path& file);

  std::optional<std::string> Read(std::string_view group, std::string_view name);
  // All changes throw std::runtime_error naming the file if it can't be written. If the file
  // exists, QSettings then keeps the change in memory and writes it with the next one; otherwise
  // the change is lost.
  void Write(std::string_view group, std::string_view name, std::string_view value);
  void AddGroup(std::string_view group);
  // True also for a group that only has groups below it.
  bool HasGroup(std::string_view group);

  // True while a damaged file can't be renamed, or a file may not be read (it is reported, but not
  // renamed). Nothing can be read or written until it is gone or may be read.
  bool Blocked() const { return forbidden_ || blocked_at_ != std::filesystem::file_time_type(); }
  // False if this user has no permission to write the file or its folder.
  bool MayBeWritten() const;
  const std::filesystem::path& File() const { return file_; }
  // What went wrong with the file since the last call, in sentences for the user.
  std::vector<std::string> TakeProblems();

 private:
  std::unique_ptr<QSettings> Open();
  void Change(const std::function<void(QSettings& settings)>& change);
  void Begin() const;
  void RequireWritten(QSettings* settings) const;
  bool SetAside(const std::string& why);
  void ImportOldFile(const std::filesystem::path& old);

  std::filesystem::path file_;
  std::filesystem::file_time_type blocked_at_{};
  bool forbidden_ = false;
  std::map<std::string, std::string> imported_;  // values that aren't saved yet
  std::vector<std::string> problems_;
};

// The settings in such a file.
class FileSettings : public SettingsStore {
 public:
  // Usually UserFile("settings").
  explicit FileSettings(const std::filesystem::path& file) : file_(file) {}

  std::optional<std::string> ReadFrom(std::string_view section,
                                      std::string_view key) const override {
    return file_.Read(section, key);
  }
  std::string Place() const override;
  // Throws std::runtime_error naming the file if it can't be written.
  void Save(std::string_view key, std::string_view text) override {
    file_.Write(kSection, key, text);
  }

  // Sentences for the user about a damaged file, to be shown once after the construction.
  std::vector<std::string> TakeProblems() { return file_.TakeProblems(); }

 private:
  mutable SharedIniFile file_;
};

}  // namespace velumar
