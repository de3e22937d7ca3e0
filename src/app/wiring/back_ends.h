#pragma once

#include <QString>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "app/wiring/options.h"
#include "platform/chart_windows.h"
#include "platform/registry.h"
#include "platform/services.h"

namespace velumar {

// What this platform has behind the interfaces that need no windows of our own.
struct BackEnds {
  std::unique_ptr<ChartWindows> chart_windows;
  std::unique_ptr<KeySender> keys;
  std::unique_ptr<SettingsStore> settings;
  std::unique_ptr<Registry> registry;
  std::unique_ptr<LocaleInfo> locale;
  std::unique_ptr<WallClock> clock;
  std::unique_ptr<Programs> programs;
  std::string default_data_dir;
  // Beside the program, or in the user's data folder where that can't be written.
  std::string ledger_file;
  // Sentences for the user about what couldn't be read or written.
  std::vector<std::string> problems;
};

// Where settings and registry lie: as the options name it, or the user's own.
QString SettingsFolder(const Options& options);

// What all systems have in the same way, once the registry is there: the chart program's keys in
// it, samples and ledger.
void AddCommonBackEnds(BackEnds& ends, const std::filesystem::path& program_folder);

// `program_folder` has no separator at its end. Throws std::runtime_error where the window system
// can't be reached.
BackEnds SystemBackEnds(const Options& options, const std::string& program_folder);

}  // namespace velumar
