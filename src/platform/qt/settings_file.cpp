#include "platform/qt/settings_file.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLockFile>
#include <QSettings>
#include <algorithm>
#include <charconv>
#include <stdexcept>
#include <utility>

#include "base/paths.h"
#include "base/whole_file.h"

namespace velumar {

namespace fs = std::filesystem;

namespace {

QString Escaped(std::string_view name) {
  // The value without a name that registry keys have.
  if (name.empty()) return QStringLiteral("@");
  QString escaped = QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size()));
  escaped.replace(u'%', QStringLiteral("%25")).replace(u'/', QStringLiteral("%2F"));
  if (escaped == u'@') return QStringLiteral("%40");
  return escaped == u'.' ? QStringLiteral("%2E") : escaped;
}

QString PrefixOf(std::string_view group) {
  QString prefix;
  while (!group.empty()) {
    const std::size_t end = std::min(group.find('\\'), group.size());
    prefix += Escaped(group.substr(0, end)) + u'/';
    group.remove_prefix(std::min(end + 1, group.size()));
  }
  return prefix;
}

QString KeyOf(std::string_view group, std::string_view name) {
  return PrefixOf(group) + Escaped(name);
}

// An entry that only says that its group exists.
QString GroupKey(std::string_view group) { return PrefixOf(group) + u'.'; }

bool HaveGroup(const QStringList& keys, std::string_view group) {
  const QString prefix = PrefixOf(group);
  return std::any_of(keys.begin(), keys.end(), [&](const QString& key) {
    return key.startsWith(prefix, Qt::CaseInsensitive);
  });
}

// The key as the file spells it.
QString Spelled(const QSettings& settings, const QString& key) {
  const QStringList keys = settings.allKeys();
  const auto found = std::find_if(keys.begin(), keys.end(), [&](const QString& other) {
    return other.compare(key, Qt::CaseInsensitive) == 0;
  });
  return found == keys.end() ? key : *found;
}

QVariant ToVariant(std::string_view value) {
  const QByteArray bytes(value.data(), static_cast<qsizetype>(value.size()));
  const QString text = QString::fromUtf8(bytes);
  return text.toUtf8() == bytes ? QVariant(text) : QVariant(bytes);
}

std::string ToBytes(const QVariant& value) {
  if (value.typeId() == QMetaType::QByteArray) return value.toByteArray().toStdString();
  // A text with commas that somebody wrote without quotes.
  if (value.typeId() == QMetaType::QStringList) {
    return value.toStringList().join(QStringLiteral(", ")).toStdString();
  }
  return value.toString().toStdString();
}

fs::path WithEnding(fs::path file, const std::string& ending) { return file += ending; }

// "%" and two hexadecimal digits are a byte.
std::string Unescaped(std::string_view text) {
  std::string plain;
  for (std::size_t i = 0; i < text.size(); ++i) {
    unsigned value = 0;
    const char* const digits = text.data() + i + 1;
    const bool escape = text[i] == '%' && i + 2 < text.size() &&
                        std::from_chars(digits, digits + 2, value, 16).ptr == digits + 2;
    plain += escape ? static_cast<char>(value) : text[i];
    if (escape) i += 2;
  }
  return plain;
}

// Why QSettings must not open the file, or nothing.
std::string WhyUnreadable(const fs::path& file) {
  const QFileInfo info(file);
  if (info.isDir()) return "it is a folder";
  if (info.exists() && !info.isFile()) return "it is a pipe or a device";
  if (info.size() <= SharedIniFile::kLargest) return {};
  return "it has " + std::to_string(info.size()) + " bytes";
}

bool MayNotBeRead(const fs::path& file) {
  QFile reading(file);
  return reading.exists() && !reading.open(QFile::ReadOnly);
}

struct CaseLess {
  bool operator()(const QString& a, const QString& b) const {
    return a.compare(b, Qt::CaseInsensitive) < 0;
  }
};

struct OldValues {
  std::map<QString, std::string, CaseLess> values;  // by their keys in the new form
  std::string first_bad_line;
  int bad_lines = 0;
};

// Reads the form of earlier versions: "[group]", "name=value", "#" for comments. Values after a
// damaged group line belong to no group.
OldValues ReadOldForm(std::string_view text) {
  OldValues old;
  std::optional<std::string> group;
  bool group_is_empty = false;
  const auto end_group = [&] {
    if (group_is_empty) old.values[GroupKey(*group)] = "";
  };
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    std::string_view line = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    if (line.ends_with('\r')) line.remove_suffix(1);
    if (line.empty() || line.front() == '#') continue;
    const std::size_t equals = line.find('=');
    const bool begins_group = line.front() == '[';
    if (begins_group) {
      end_group();
      group.reset();
      group_is_empty = false;
    }
    if (begins_group && line.ends_with(']')) {
      group = Unescaped(line.substr(1, line.size() - 2));
      group_is_empty = true;
    } else if (group && equals != std::string_view::npos) {
      const QString key = KeyOf(*group, Unescaped(line.substr(0, equals)));
      old.values[key] = Unescaped(line.substr(equals + 1));
      group_is_empty = false;
    } else if (old.bad_lines++ == 0) {
      old.first_bad_line = line.substr(0, 40);
    }
  }
  end_group();
  return old;
}

// Keeps other processes out. QSettings reads without the lock that it writes with, and takes the
// time of the file after its contents: what another process writes in between would look read, and
// the next change would undo it. In a folder that can't be written, nobody is kept out.
class FileInUse {
 public:
  explicit FileInUse(const fs::path& file)
      : lock_(QFileInfo(WithEnding(file, ".use.lock")).absoluteFilePath()) {
    lock_.lock();
  }

 private:
  QLockFile lock_;
};

// Only those that the file doesn't have.
void AddValues(const std::map<std::string, std::string>& values, QSettings& settings) {
  for (const auto& [name, value] : values) {
    const QString key = Spelled(settings, QString::fromStdString(name));
    if (!settings.contains(key)) settings.setValue(key, ToVariant(value));
  }
}

}  // namespace

SharedIniFile::SharedIniFile(const fs::path& file) : file_(WithEnding(file, ".ini")) {
  std::error_code error;
  if (!fs::exists(file_, error) && fs::exists(file, error)) ImportOldFile(file);
  const FileInUse held(file_);
  Open();
}

std::optional<std::string> SharedIniFile::Read(std::string_view group, std::string_view name) {
  const FileInUse held(file_);
  const auto settings = Open();
  if (!settings) return std::nullopt;
  const QString key = KeyOf(group, name);
  const QVariant value = settings->value(Spelled(*settings, key));
  if (value.isValid()) return ToBytes(value);
  const auto found = std::find_if(imported_.begin(), imported_.end(), [&](const auto& imported) {
    return key.compare(QString::fromStdString(imported.first), Qt::CaseInsensitive) == 0;
  });
  return found == imported_.end() ? std::nullopt : std::optional(found->second);
}

void SharedIniFile::Write(std::string_view group, std::string_view name, std::string_view value) {
  Change([&](QSettings& settings) {
    const QString key = Spelled(settings, KeyOf(group, name));
    // QSettings would write the file again.
    if (settings.contains(key) && ToBytes(settings.value(key)) == value) return;
    settings.setValue(key, ToVariant(value));
  });
}

void SharedIniFile::AddGroup(std::string_view group) {
  Change([&](QSettings& settings) {
    if (!HaveGroup(settings.allKeys(), group)) settings.setValue(GroupKey(group), QString());
  });
}

bool SharedIniFile::HasGroup(std::string_view group) {
  const FileInUse held(file_);
  const auto settings = Open();
  if (!settings) return false;
  QStringList keys = settings->allKeys();
  for (const auto& [name, value] : imported_) keys += QString::fromStdString(name);
  return HaveGroup(keys, group);
}

bool SharedIniFile::MayBeWritten() const {
  const QFileInfo file(file_);
  QFileInfo folder(file.absolutePath());
  while (!folder.exists() && !folder.isRoot()) folder = QFileInfo(folder.absolutePath());
  return folder.isWritable() && (!file.exists() || file.isWritable());
}

std::vector<std::string> SharedIniFile::TakeProblems() { return std::exchange(problems_, {}); }

// Opening reads the file again if another process has changed it. Null while it is blocked.
std::unique_ptr<QSettings> SharedIniFile::Open() {
  std::error_code missing;
  if (blocked_at_ != fs::file_time_type() && fs::last_write_time(file_, missing) == blocked_at_ &&
      !missing)
    return nullptr;
  blocked_at_ = {};
  const std::string why = WhyUnreadable(file_);
  if (!why.empty() && !SetAside(why)) return nullptr;
  const auto open = [this] {
    auto settings =
        std::make_unique<QSettings>(QFileInfo(file_).absoluteFilePath(), QSettings::IniFormat);
    settings->allKeys();  // sections are parsed when they are first used
    return settings;
  };
  auto settings = open();
  const bool reported = std::exchange(
      forbidden_, settings->status() == QSettings::AccessError && MayNotBeRead(file_));
  if (forbidden_ && !reported) {
    problems_.push_back(PathText(file_) +
                        " could not be read: you have no permission to read it. Nothing is saved "
                        "until you allow reading it.");
  }
  if (forbidden_) return nullptr;
  if (settings->status() != QSettings::FormatError) return settings;
  settings.reset();
  return SetAside("it is not a settings file") ? open() : nullptr;
}

void SharedIniFile::Change(const std::function<void(QSettings& settings)>& change) {
  const FileInUse held(file_);
  const auto settings = Open();
  if (settings) {
    AddValues(imported_, *settings);
    change(*settings);
  }
  RequireWritten(settings.get());
  imported_.clear();
}

// Creates the file, empty and for this user alone, if it is missing.
void SharedIniFile::Begin() const {
  QFile(file_).open(QFile::WriteOnly | QFile::NewOnly, QFile::ReadOwner | QFile::WriteOwner);
}

void SharedIniFile::RequireWritten(QSettings* settings) const {
  // New folders and files are for this user alone.
  const QDir folder = QFileInfo(file_).absoluteDir();
  if (settings != nullptr && !folder.exists()) {
    const QDir parent(QFileInfo(folder.path()).path());
    parent.mkpath(QStringLiteral("."));
    parent.mkdir(folder.dirName(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
  }
  const bool fresh = !QFileInfo::exists(QFileInfo(file_).filePath());
  if (settings != nullptr) settings->sync();
  if (fresh)
    QFile::setPermissions(QFileInfo(file_).filePath(), QFile::ReadOwner | QFile::WriteOwner);
  if (settings != nullptr && settings->status() == QSettings::NoError) return;
  throw std::runtime_error(PathText(file_) +
                           " could not be saved. Check that its folder can be written and the "
                           "disk is not full.");
}

// Renames the file and begins a new one. Returns false if it could not be renamed.
bool SharedIniFile::SetAside(const std::string& why) {
  fs::path aside;
  int number = 1;
  do {
    aside = WithEnding(file_, ".damaged-" + std::to_string(number++));
  } while (fs::exists(fs::symlink_status(aside)));
  std::error_code error;
  fs::rename(file_, aside, error);
  if (!error) {
    Begin();
    problems_.push_back(PathText(file_) + " could not be read: " + why + ". It was renamed to " +
                        PathText(aside.filename()) + ", and a new file is used.");
    return true;
  }
  // Another process may have renamed it where nobody is kept out.
  if (error == std::errc::no_such_file_or_directory) return true;
  problems_.push_back(PathText(file_) + " could not be read: " + why +
                      ". It could not be renamed either (" + error.message() +
                      "). Nothing is saved until you remove it.");
  std::error_code no_time;
  blocked_at_ = fs::last_write_time(file_, no_time);
  return false;
}

void SharedIniFile::ImportOldFile(const fs::path& old) {
  OldValues read;
  try {
    read = ReadOldForm(ReadWholeFile(old, static_cast<std::size_t>(kLargest)));
  } catch (const std::exception& error) {
    problems_.push_back("The values of an earlier version were not imported from " + PathText(old) +
                        ": " + error.what());
    return;
  }
  if (read.bad_lines > 0) {
    const std::string more =
        read.bad_lines > 1 ? ", nor are " + std::to_string(read.bad_lines - 1) + " more lines" : "";
    problems_.push_back("Not all values of an earlier version were imported from " + PathText(old) +
                        ": \"" + read.first_bad_line + "\" is not a setting" + more + ".");
  }
  for (const auto& [key, value] : read.values) imported_[key.toStdString()] = value;
  try {
    Change([](QSettings&) {});
    Begin();
  } catch (const std::exception& error) {
    problems_.push_back("The values of an earlier version in " + PathText(old) +
                        " are used, but could not be imported: " + error.what());
  }
}

std::string FileSettings::Place() const { return PathText(file_.File()); }

}  // namespace velumar
