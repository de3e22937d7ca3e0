#include <exception>
#include <filesystem>

#include "app/back_ends.h"
#include "base/paths.h"
#include "platform/chart_program_keys.h"
#include "platform/clock_system.h"
#include "platform/settings_file.h"
#include "platform/system_locale.h"
#include "platform/user_files.h"
#include "platform/windows/chart_windows.h"
#include "platform/windows/key_sender.h"
#include "platform/windows/programs.h"
#include "platform/windows/registry_settings.h"
#include "platform/windows/system_registry.h"

namespace velumar {

namespace {

constexpr std::string_view kHostTitle = "MetaStock";

// The user's own settings stand in the registry, those of a folder in a file there.
std::unique_ptr<SettingsStore> OpenSettings(const Options& options,
                                            std::vector<std::string>& problems) {
  if (options.settings_dir.isEmpty()) return std::make_unique<RegistrySettings>();
  const std::filesystem::path folder = NativePath(options.settings_dir.toStdString());
  auto settings = std::make_unique<FileSettings>(folder / "settings");
  for (std::string& problem : settings->TakeProblems()) problems.push_back(std::move(problem));
  return settings;
}

void RegisterChartProgram(Registry& registry, const std::filesystem::path& program_folder,
                          std::vector<std::string>& problems) {
  try {
    EnsureChartProgramKeys(registry, PathText(program_folder / "charthost"));
  } catch (const std::exception& error) {
    problems.emplace_back(error.what());
  }
}

std::string Samples(const std::filesystem::path& program_folder,
                    std::vector<std::string>& problems) {
  try {
    return PathText(SampleDirectory(program_folder)) + "\\";
  } catch (const std::exception& error) {
    problems.emplace_back(std::string("The samples can't be copied for you: ") + error.what());
    return {};
  }
}

}  // namespace

QString SettingsFolder(const Options& options) {
  if (!options.settings_dir.isEmpty()) return options.settings_dir;
  return QString::fromStdString(PathText(UserFile("settings").parent_path()));
}

BackEnds SystemBackEnds(const Options& options, const std::string& program_folder) {
  const std::filesystem::path folder = NativePath(program_folder).make_preferred();
  BackEnds ends;
  ends.settings = OpenSettings(options, ends.problems);
  ends.registry = std::make_unique<SystemRegistry>();
  RegisterChartProgram(*ends.registry, folder, ends.problems);
  ends.chart_windows = std::make_unique<WindowsChartWindows>(std::string(kHostTitle));
  ends.keys = std::make_unique<WindowsKeySender>(std::string(kHostTitle));
  ends.locale = SystemLocale();
  ends.clock = std::make_unique<SystemClock>();
  ends.programs = std::make_unique<WindowsPrograms>(options.chart_arguments);
  ends.default_data_dir = Samples(folder, ends.problems);
  ends.ledger_file = PathText(LedgerFile(folder));
  return ends;
}

}  // namespace velumar
