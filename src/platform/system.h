#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/services.h"

namespace velumar {

// The clock of this computer, in its time zone, which may change while the program runs.
class SystemClock : public WallClock {
 public:
  std::int32_t Today() const override;
};

// The user's own date format, from wherever this system keeps it.
std::unique_ptr<LocaleInfo> SystemLocale();

// Starts programs that outlive this process; on a system with consoles they print where this one
// does.
class SystemPrograms : public Programs {
 public:
  // `extra_arguments` are appended to every command line.
  explicit SystemPrograms(std::vector<std::string> extra_arguments = {})
      : extra_arguments_(std::move(extra_arguments)) {}

  void Start(std::string_view command_line) override;
  void OpenInBrowser(std::string_view address) override;
  [[noreturn]] void EndProcess() override;

 private:
  std::vector<std::string> extra_arguments_;
};

}  // namespace velumar
