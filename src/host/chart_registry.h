#pragma once

#include <string>
#include <string_view>

#include "platform/registry.h"
#include "platform/services.h"

namespace velumar {

// What the registry says about the chart program: which version is installed and where, and what it
// is to open next time. A box names a key that can't be read or written, and why.
class ChartRegistry {
 public:
  ChartRegistry(Registry& registry, MessageBoxes& boxes) : registry_(registry), boxes_(boxes) {}

  // "9" if version 9 is installed, else "8", also without any.
  std::string Version();
  // The program's folder, perhaps without a closing "\". "Error" if the key has no such value.
  std::string ProgramFolder();
  // The command line that starts the program; empty if the folder is.
  std::string StartCommand();
  // The keys must exist: shows a box and returns false if the chart program never ran.
  bool SaveDataFolder(std::string_view folder);
  bool SaveChartsFolder(std::string_view folder);

 private:
  std::string UserKey(std::string_view product, std::string_view sub_key);
  bool Save(const std::string& key, std::string_view name, std::string_view text);
  bool Succeeded(long code, const std::string& key);

  Registry& registry_;
  MessageBoxes& boxes_;
};

}  // namespace velumar
