#include "platform/qt/registry_file.h"

#include <QByteArray>
#include <algorithm>
#include <optional>
#include <stdexcept>
#include <utility>

namespace velumar {

namespace {

// The codes of the registry functions.
constexpr long kSuccess = 0;
constexpr long kNotFound = 2;
constexpr long kDenied = 5;
constexpr long kBadHandle = 6;
constexpr long kBadParameter = 87;
constexpr long kDamaged = 1009;
constexpr long kWriteFailed = 1013;

constexpr std::uint32_t kMaySetValues = 0x0002;
constexpr qsizetype kDWordBytes = 4;

constexpr std::string_view kString = "string:";
constexpr std::string_view kDWord = "dword:";
constexpr std::string_view kBinary = "binary:";

std::string_view RootName(RegistryRoot root) {
  switch (root) {
    case RegistryRoot::kClassesRoot:
      return "HKEY_CLASSES_ROOT";
    case RegistryRoot::kCurrentUser:
      return "HKEY_CURRENT_USER";
    case RegistryRoot::kLocalMachine:
      return "HKEY_LOCAL_MACHINE";
    case RegistryRoot::kUsers:
      return "HKEY_USERS";
    case RegistryRoot::kPerformanceData:
      return "HKEY_PERFORMANCE_DATA";
    case RegistryRoot::kCurrentConfig:
      return "HKEY_CURRENT_CONFIG";
    case RegistryRoot::kDynData:
      return "HKEY_DYN_DATA";
    case RegistryRoot::kNone:
      break;
  }
  return {};
}

std::string KeyPath(RegistryRoot root, std::string_view sub_key) {
  std::string path(RootName(root));
  if (!sub_key.empty()) path.append("\\").append(sub_key);
  return path;
}

// A number's highest digit is written first, as people read it.
std::string TextOf(RegistryType type, std::string_view value) {
  if (type == RegistryType::kString) return std::string(kString) + std::string(value);
  std::string bytes(value);
  if (type == RegistryType::kDWord) std::reverse(bytes.begin(), bytes.end());
  return std::string(type == RegistryType::kDWord ? kDWord : kBinary) +
         QByteArray::fromStdString(bytes).toHex().toStdString();
}

struct RegistryValue {
  RegistryType type;
  std::string bytes;
};

// Nothing for a text that isn't of the form of TextOf.
std::optional<RegistryValue> ValueOf(const std::string& text) {
  if (text.starts_with(kString)) {
    return RegistryValue{RegistryType::kString, text.substr(kString.size())};
  }
  const bool number = text.starts_with(kDWord);
  if (!number && !text.starts_with(kBinary)) return std::nullopt;
  const QByteArray digits =
      QByteArray::fromStdString(text.substr(number ? kDWord.size() : kBinary.size())).toLower();
  QByteArray bytes = QByteArray::fromHex(digits);
  // What isn't a digit was left out.
  if (bytes.toHex() != digits || (number && bytes.size() != kDWordBytes)) return std::nullopt;
  if (number) std::reverse(bytes.begin(), bytes.end());
  return RegistryValue{number ? RegistryType::kDWord : RegistryType::kBinary, bytes.toStdString()};
}

}  // namespace

long FileRegistry::OpenKey(RegistryRoot root, std::string_view sub_key, std::uint32_t access,
                           RegistryKey& key) {
  if (root == RegistryRoot::kNone) return kBadHandle;
  std::string path = KeyPath(root, sub_key);
  const bool there = sub_key.empty() || file_.HasGroup(path);
  if (file_.Blocked()) return kDamaged;
  if (!there) return kNotFound;
  key = ++last_key_;
  opened_[key] = {std::move(path), access};
  return kSuccess;
}

void FileRegistry::CloseKey(RegistryKey key) { opened_.erase(key); }

long FileRegistry::QueryValue(RegistryKey key, std::string_view name, RegistryType& type,
                              std::string& bytes) {
  const auto opened = opened_.find(key);
  if (opened == opened_.end()) return kBadHandle;
  const std::optional<std::string> text = file_.Read(opened->second.path, name);
  if (!text) return kNotFound;
  const std::optional<RegistryValue> value = ValueOf(*text);
  if (!value) return kDamaged;
  type = value->type;
  bytes = value->bytes;
  return kSuccess;
}

long FileRegistry::SetValue(RegistryKey key, std::string_view name, RegistryType type,
                            std::string_view bytes) {
  if (type == RegistryType::kDWord && bytes.size() != kDWordBytes) return kBadParameter;
  return Change(key,
                [&](const std::string& path) { file_.Write(path, name, TextOf(type, bytes)); });
}

long FileRegistry::DeleteValue(RegistryKey key, std::string_view name) {
  bool found = false;
  const long code = Change(key, [&](const std::string& path) {
    found = file_.Read(path, name).has_value();
    if (!found) return;
    file_.Remove(path, name);
    file_.AddGroup(path);
  });
  return code == kSuccess && !found ? kNotFound : code;
}

long FileRegistry::CreateKey(RegistryRoot root, std::string_view sub_key) {
  if (root == RegistryRoot::kNone) return kBadHandle;
  return Change([&] { file_.AddGroup(KeyPath(root, sub_key)); });
}

long FileRegistry::DeleteKey(RegistryRoot root, std::string_view sub_key) {
  if (root == RegistryRoot::kNone) return kBadHandle;
  const std::string path = KeyPath(root, sub_key);
  if (sub_key.empty() || file_.HasGroupsBelow(path)) return kDenied;
  if (!file_.HasGroup(path)) return kNotFound;
  return Change([&] {
    file_.RemoveGroup(path);
    // The key above may have existed only through this one.
    file_.AddGroup(path.substr(0, path.rfind('\\')));
  });
}

long FileRegistry::Change(RegistryKey key,
                          const std::function<void(const std::string& path)>& change) {
  const auto opened = opened_.find(key);
  if (opened == opened_.end()) return kBadHandle;
  if ((opened->second.access & kMaySetValues) == 0) return kDenied;
  return Change([&] { change(opened->second.path); });
}

long FileRegistry::Change(const std::function<void()>& change) {
  try {
    change();
    return kSuccess;
  } catch (const std::runtime_error&) {
    if (file_.Blocked()) return kDamaged;
    return file_.MayBeWritten() ? kWriteFailed : kDenied;
  }
}

}  // namespace velumar
