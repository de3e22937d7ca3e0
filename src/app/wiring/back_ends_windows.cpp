#include <filesystem>

#include "app/wiring/back_ends.h"
#include "base/paths.h"
#include "charts/qt_text.h"
#include "platform/qt/settings_file.h"
#include "platform/system.h"
#include "platform/user_files.h"
#include "platform/windows/chart_desktop.h"
#include "platform/windows/registry.h"

namespace velumar {

namespace {

// The user's own settings are in the registry, those of a folder in a file in it.
std::unique_ptr<SettingsStore> OpenSettings(const Options& options,
                                            std::vector<std::string>& problems) {
  if (options.settings_dir.isEmpty()) return std::make_unique<RegistrySettings>();
  const std::filesystem::path folder = NativePath(options.settings_dir.toStdString());
  auto settings = std::make_unique<FileSettings>(folder / "settings");
  for (std::string& problem : settings->TakeProblems()) problems.push_back(std::move(problem));
  return settings;
}

}  // namespace

QString SettingsFolder(const Options& options) {
  if (!options.settings_dir.isEmpty()) return options.settings_dir;
  return ToQt(PathText(UserFile("settings").parent_path()));
}

BackEnds SystemBackEnds(const Options& options) {
  BackEnds ends;
  ends.settings = OpenSettings(options, ends.problems);
  ends.registry = std::make_unique<SystemRegistry>();
  ends.chart_windows = MakeWindowsChartWindows();
  ends.keys = MakeWindowsKeySender();
  ends.locale = SystemLocale();
  ends.clock = std::make_unique<SystemClock>();
  ends.programs = std::make_unique<SystemPrograms>(options.chart_arguments);
  return ends;
}

}  // namespace velumar
