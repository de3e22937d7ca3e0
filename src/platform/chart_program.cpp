#include "platform/chart_program.h"

#include <filesystem>
#include <functional>
#include <stdexcept>
#include <string>

#include "base/paths.h"
#include "base/text.h"

namespace velumar {

namespace {

constexpr std::string_view kInstalled = "SOFTWARE\\Equis International\\MetaStock Professional\\";

void Require(long code, const std::string& sub_key) {
  if (code == 0) return;
  throw std::runtime_error("The registry key " + sub_key + " could not be written (code " +
                           std::to_string(code) + ").");
}

// Sets the text unless there is one that `keep` accepts.
void EnsureText(Registry& registry, const std::string& key, std::string_view name,
                std::string_view text, const std::function<bool(const std::string&)>& keep) {
  Require(registry.CreateKey(RegistryRoot::kCurrentUser, key), key);
  std::string there;
  const bool kept = registry.ReadText(key, name, there) == 0 && keep(there);
  if (!kept) Require(registry.WriteText(key, name, text), key);
}

// If only administrators may write for all users, the mark stays missing. Version 8 is assumed
// without one.
void MarkAsInstalled(Registry& registry, const std::string& sub_key) {
  constexpr long kDenied = 5;
  const long code = registry.CreateKey(RegistryRoot::kLocalMachine, sub_key);
  if (code != kDenied) Require(code, sub_key);
}

bool HoldsProgram(const std::string& folder) {
  std::error_code error;
  return std::filesystem::exists(NativePath(folder + "\\" + std::string(kChartProgramFile)), error);
}

void EnsureVersion(Registry& registry, const std::string& version,
                   std::string_view program_folder) {
  const auto keep_any = [](const std::string&) { return true; };
  const std::string data = "Software\\Equis\\MetaStock Pro " + version + "\\";
  EnsureText(registry, "Software\\Equis\\Common\\" + version + "\\File Paths", "ProgramPath",
             program_folder, HoldsProgram);
  EnsureText(registry, data + "DataPath", "LastPath", "", keep_any);
  EnsureText(registry, data + "OpenFileData", "SmartChartsPath", "", keep_any);
}

}  // namespace

bool IsChartProgramFile(std::string_view name) { return UpperCased(name) == kChartProgramFile; }

void EnsureChartProgramKeys(Registry& registry, std::string_view program_folder) {
  const std::string installed(kInstalled);
  const bool newer = registry.HasKey(RegistryRoot::kLocalMachine, installed + "9.0");
  if (!newer) MarkAsInstalled(registry, installed + "8.0");
  EnsureVersion(registry, newer ? "9.0" : "8.0", program_folder);
}

}  // namespace velumar
