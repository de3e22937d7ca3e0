#include "platform/posix/registry_file.h"

#include <system_error>

#include "platform/posix/registry_value_text.h"

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

bool SameText(std::string_view left, std::string_view right) {
  const CaselessLess less;
  return !less(left, right) && !less(right, left);
}

bool HasKeysBelow(const Sections& sections, const std::string& path) {
  const std::string prefix = path + "\\";
  const auto next = sections.lower_bound(prefix);
  return next != sections.end() && next->first.size() > prefix.size() &&
         SameText(std::string_view(next->first).substr(0, prefix.size()), prefix);
}

// A root is always there.
bool KeyExists(const Sections& sections, const std::string& path) {
  return path.find('\\') == std::string::npos || sections.contains(path) ||
         HasKeysBelow(sections, path);
}

}  // namespace

long FileRegistry::OpenKey(RegistryRoot root, std::string_view sub_key, std::uint32_t access,
                           RegistryKey& key) {
  if (root == RegistryRoot::kNone) return kBadHandle;
  if (file_.Blocked()) return kDamaged;
  std::string path = KeyPath(root, sub_key);
  if (!KeyExists(file_.Current(), path)) return kNotFound;
  key = ++last_key_;
  opened_[key] = {std::move(path), access};
  return kSuccess;
}

void FileRegistry::CloseKey(RegistryKey key) { opened_.erase(key); }

long FileRegistry::QueryValue(RegistryKey key, std::string_view name, RegistryType& type,
                              std::string& bytes) {
  const auto opened = opened_.find(key);
  if (opened == opened_.end()) return kBadHandle;
  const Sections& sections = file_.Current();
  const auto section = sections.find(opened->second.path);
  if (section == sections.end()) return kNotFound;
  const auto entry = section->second.find(name);
  if (entry == section->second.end()) return kNotFound;
  const auto value = ParseRegistryValue(entry->second);
  if (!value) return kDamaged;
  type = value->type;
  bytes = value->bytes;
  return kSuccess;
}

long FileRegistry::SetValue(RegistryKey key, std::string_view name, RegistryType type,
                            std::string_view bytes) {
  if (type == RegistryType::kDWord && bytes.size() != 4) return kBadParameter;
  return Write(key, [&](SectionEntries& entries) {
    entries.insert_or_assign(std::string(name), RegistryValueText({type, std::string(bytes)}));
  });
}

long FileRegistry::DeleteValue(RegistryKey key, std::string_view name) {
  bool found = false;
  const long code = Write(key, [&](SectionEntries& entries) {
    const auto entry = entries.find(name);
    found = entry != entries.end();
    if (found) entries.erase(entry);
  });
  return code == kSuccess && !found ? kNotFound : code;
}

long FileRegistry::CreateKey(RegistryRoot root, std::string_view sub_key) {
  if (root == RegistryRoot::kNone) return kBadHandle;
  return Change(
      [path = KeyPath(root, sub_key)](Sections& sections) { sections.try_emplace(path); });
}

long FileRegistry::DeleteKey(RegistryRoot root, std::string_view sub_key) {
  if (root == RegistryRoot::kNone) return kBadHandle;
  const std::string path = KeyPath(root, sub_key);
  long refusal = kSuccess;
  const long code = Change([&](Sections& sections) {
    if (!KeyExists(sections, path)) refusal = kNotFound;
    if (HasKeysBelow(sections, path) || sub_key.empty()) refusal = kDenied;
    if (refusal != kSuccess) return;
    sections.erase(sections.find(path));
    // The key above may have existed only through this one.
    sections.try_emplace(path.substr(0, path.rfind('\\')));
  });
  return code == kSuccess ? refusal : code;
}

long FileRegistry::Write(RegistryKey key, const std::function<void(SectionEntries&)>& change) {
  const auto opened = opened_.find(key);
  if (opened == opened_.end()) return kBadHandle;
  if ((opened->second.access & kMaySetValues) == 0) return kDenied;
  return Change([&](Sections& sections) { change(sections[opened->second.path]); });
}

long FileRegistry::Change(const std::function<void(Sections&)>& change) {
  if (file_.Blocked()) return kDamaged;
  try {
    file_.Change(change);
    return kSuccess;
  } catch (const std::system_error& error) {
    const bool denied = error.code() == std::errc::permission_denied ||
                        error.code() == std::errc::operation_not_permitted ||
                        error.code() == std::errc::read_only_file_system;
    return denied ? kDenied : kWriteFailed;
  }
}

}  // namespace velumar
