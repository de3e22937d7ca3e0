#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/services.h"

namespace velumar {

// Programs are started apart from this process and outlive it.
class WindowsPrograms : public Programs {
 public:
  // `extra_arguments` are added behind those of every command line.
  explicit WindowsPrograms(std::vector<std::string> extra_arguments = {})
      : extra_arguments_(std::move(extra_arguments)) {}

  void Start(std::string_view command_line) override;
  void OpenInBrowser(std::string_view address) override;
  [[noreturn]] void EndProcess() override;

 private:
  std::vector<std::string> extra_arguments_;
};

// One argument as a program finds it again in its command line.
std::wstring QuotedArgument(std::string_view argument);

}  // namespace velumar
