#pragma once

#include <QString>
#include <memory>
#include <string>
#include <vector>

#include "app/wiring/options.h"
#include "platform/chart_windows.h"
#include "platform/registry.h"
#include "platform/services.h"

namespace velumar {

// This platform's implementations of the interfaces that need no windows of our own.
struct BackEnds {
  std::unique_ptr<ChartWindows> chart_windows;
  std::unique_ptr<KeySender> keys;
  std::unique_ptr<SettingsStore> settings;
  std::unique_ptr<Registry> registry;
  std::unique_ptr<LocaleInfo> locale;
  std::unique_ptr<WallClock> clock;
  std::unique_ptr<Programs> programs;
  // Sentences for the user about what could not be read or written.
  std::vector<std::string> problems;
};

// The folder of settings and registry: the one in the options, or the user's own.
QString SettingsFolder(const Options& options);

// Throws std::runtime_error if the window system can't be reached.
BackEnds SystemBackEnds(const Options& options);

}  // namespace velumar
