#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/services.h"

namespace velumar {

// Programs are started apart from this process and outlive it; on a system with consoles their
// output goes where this one's goes.
class SystemPrograms : public Programs {
 public:
  // `extra_arguments` are added behind those of every command line.
  explicit SystemPrograms(std::vector<std::string> extra_arguments = {})
      : extra_arguments_(std::move(extra_arguments)) {}

  void Start(std::string_view command_line) override;
  void OpenInBrowser(std::string_view address) override;
  [[noreturn]] void EndProcess() override;

 private:
  std::vector<std::string> extra_arguments_;
};

}  // namespace velumar
