#include "host/chart_registry.h"

#include "base/text.h"
#include "platform/chart_program.h"

namespace velumar {

namespace {

constexpr std::string_view kUserName = "HKEY_CURRENT_USER\\";
constexpr std::string_view kInstalled = "SOFTWARE\\Equis International\\MetaStock Professional\\";
constexpr std::string_view kDefaultFolder = "C:\\Program Files\\Equis\\MetaStock";

// The sentence for a code of the registry's functions.
std::string ErrorText(long code) {
  switch (code) {
    case 2:
    case 1010:
      return "Bad Key Name";
    case 4:
    case 1012:
      return "Can't Read Key";
    case 5:
      return "Access To this key Is Denied";
    case 8:
    case 14:
      return "Out Of memory";
    case 87:
      return "Invalid Parameter";
    case 234:
      return "There Is More Data Than The Buffer Has Been Allocated To Hold";
    case 1009:
    case 1015:
      return "The Registry Database Is Corrupt!";
    case 1011:
      return "Can't Open Key";
    case 1013:
      return "Can't Write Key";
    default:
      return "Undefined Error Code : " + std::string(code < 0 ? "" : " ") + std::to_string(code);
  }
}

}  // namespace

std::string ChartRegistry::Version() {
  const std::string newest = std::string(kInstalled) + "9.0";
  return registry_.HasKey(RegistryRoot::kLocalMachine, newest) ? "9" : "8";
}

std::string ChartRegistry::UserKey(std::string_view product, std::string_view sub_key) {
  return "Software\\Equis\\" + std::string(product) + Version() + ".0\\" + std::string(sub_key);
}

std::string ChartRegistry::ProgramFolder() {
  const std::string path = UserKey("Common\\", "File Paths");
  if (!registry_.HasKey(RegistryRoot::kCurrentUser, path)) return std::string(kDefaultFolder);
  std::string folder;
  const long code = registry_.ReadText(path, "ProgramPath", folder);
  return Succeeded(code, path) ? folder : "Error";
}

std::string ChartRegistry::StartCommand() {
  const std::string folder = ProgramFolder();
  if (folder.empty()) return {};
  return WithClosingBackslash(folder) + std::string(kChartProgramFile) + " /l /e";
}

bool ChartRegistry::SaveDataFolder(std::string_view folder) {
  return Save(UserKey("MetaStock Pro ", "DataPath"), "LastPath", folder);
}

bool ChartRegistry::SaveChartsFolder(std::string_view folder) {
  return Save(UserKey("MetaStock Pro ", "OpenFileData"), "SmartChartsPath", folder);
}

bool ChartRegistry::Save(const std::string& key, std::string_view name, std::string_view text) {
  return Succeeded(registry_.WriteText(key, name, text), key);
}

bool ChartRegistry::Succeeded(long code, const std::string& key) {
  if (code == 0) return true;
  boxes_.Show(ErrorText(code) + ": \n\n" + std::string(kUserName) + key, BoxIcon::kExclamation);
  return false;
}

}  // namespace velumar
