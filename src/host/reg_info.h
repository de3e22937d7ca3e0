#pragma once

#include <string>
#include <string_view>

#include "host/adv_registry.h"

namespace velumar {

// Which chart program is installed and where, and what it should open next time.
class RegInfo {
 public:
  RegInfo(Registry& registry, MessageBoxes& boxes) : registry_(registry, boxes) {}

  // "9" when version 9 is installed, else "8", also without any.
  std::string HostVersion();
  // The program's folder, without a guaranteed closing "\".
  std::string HostProgramPath();
  // The keys must exist: false after a box where the chart program never ran.
  bool SaveHostDataPath(std::string_view path);
  bool SaveHostChartsPath(std::string_view path);

 private:
  std::string KeyOf(std::string_view product, std::string_view sub_key);

  ADVRegistry registry_;
};

}  // namespace velumar
