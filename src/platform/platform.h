#pragma once

#include <string>

#include "platform/chart_windows.h"
#include "platform/event_loop.h"
#include "platform/registry.h"
#include "platform/services.h"
#include "platform/web_client.h"

namespace velumar {

// Everything outside the process that the logic reaches, as main puts it together.
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
  // What "LastPath" and the directory box start from.
  std::string default_data_dir;
  // Where the working store goes; empty: into the folder "Simulate" of the data directory.
  std::string store_dir;
  // The ledger's database; ":memory:" keeps nothing on disk.
  std::string ledger_file;
};

}  // namespace velumar
