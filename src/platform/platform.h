#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "platform/chart_link.h"
#include "platform/chart_windows.h"
#include "platform/event_loop.h"
#include "platform/registry.h"
#include "platform/services.h"
#include "platform/web_client.h"

namespace velumar {

// Everything outside the process that the logic uses. `main` puts it together.
struct Platform {
  EventLoop& events;
  ChartWindows& chart_windows;
  KeySender& keys;
  MessageBoxes& boxes;
  FolderDialog& folders;
  SaveDialog& files;
  ColourDialog& colours;
  Clipboard& clipboard;
  Printers& printers;
  SettingsStore& settings;
  Registry& registry;
  Screen& screen;
  LocaleInfo& locale;
  WallClock& clock;
  Programs& programs;
  WebClient& web;
  std::string program_folder;
  // The first value of "LastPath" and the directory box.
  std::string default_data_dir;
  // The folder of the working store; if empty, "Simulate" in the data directory.
  std::string store_dir;
  // The ledger's database; ":memory:" keeps nothing on disk.
  std::string ledger_file;
  // Null if the chart program is to be driven by keys only.
  ChartLink* chart_link = nullptr;
  // The folder of our own chart program.
  std::string chart_folder = {};
  // What is drawn at random follows from it; if unset, it differs each time.
  std::optional<std::uint64_t> random_seed = {};
};

}  // namespace velumar
