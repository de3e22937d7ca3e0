#include "host/reg_info.h"

namespace velumar {

namespace {

constexpr std::string_view kPresenceKey =
    "HKEY_LOCAL_MACHINE\\SOFTWARE\\Equis International\\MetaStock Professional\\";
constexpr std::string_view kDefaultFolder = "C:\\Program Files\\Equis\\MetaStock";

}  // namespace

std::string RegInfo::HostVersion() {
  return registry_.KeyExist(std::string(kPresenceKey) + "9.0") ? "9" : "8";
}

std::string RegInfo::KeyOf(std::string_view product, std::string_view sub_key) {
  return "HKEY_CURRENT_USER\\Software\\Equis\\" + std::string(product) + HostVersion() + ".0\\" +
         std::string(sub_key);
}

std::string RegInfo::HostProgramPath() {
  const std::string key = KeyOf("Common\\", "File Paths");
  if (!registry_.KeyExist(key)) return std::string(kDefaultFolder);
  return registry_.GetStringValue(key, "ProgramPath");
}

bool RegInfo::SaveHostDataPath(std::string_view path) {
  return registry_.SetStringValue(KeyOf("MetaStock Pro ", "DataPath"), "LastPath", path);
}

bool RegInfo::SaveHostChartsPath(std::string_view path) {
  return registry_.SetStringValue(KeyOf("MetaStock Pro ", "OpenFileData"), "SmartChartsPath", path);
}

}  // namespace velumar
