#include <filesystem>

#include "app/wiring/back_ends.h"
#include "base/paths.h"
#include "charts/qt_text.h"
#include "platform/qt/registry_file.h"
#include "platform/qt/settings_file.h"
#include "platform/system.h"
#include "platform/user_files.h"
#include "platform/x11/chart_desktop.h"

namespace velumar {

namespace {

std::filesystem::path UserFileIn(const Options& options, std::string_view name) {
  if (options.settings_dir.isEmpty()) return UserFile(name);
  return NativePath(options.settings_dir.toStdString()) / name;
}

void Append(std::vector<std::string>& all, std::vector<std::string> more) {
  for (std::string& text : more) all.push_back(std::move(text));
}

}  // namespace

QString SettingsFolder(const Options& options) {
  return ToQt(PathText(UserFileIn(options, "settings").parent_path()));
}

BackEnds SystemBackEnds(const Options& options) {
  auto settings = std::make_unique<FileSettings>(UserFileIn(options, "settings"));
  auto registry = std::make_unique<FileRegistry>(UserFileIn(options, "registry"));
  BackEnds ends;
  Append(ends.problems, settings->TakeProblems());
  Append(ends.problems, registry->TakeProblems());
  ends.chart_windows = MakeX11ChartWindows();
  ends.keys = MakeX11KeySender();
  ends.settings = std::move(settings);
  ends.registry = std::move(registry);
  ends.locale = SystemLocale();
  ends.clock = std::make_unique<SystemClock>();
  ends.programs = std::make_unique<SystemPrograms>(options.chart_arguments);
  return ends;
}

}  // namespace velumar
