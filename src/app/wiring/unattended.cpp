#include "app/wiring/unattended.h"

#include <iostream>
#include <utility>

namespace velumar {

void PrintedMessageBoxes::Show(std::string_view text, BoxIcon) {
  std::cerr << "velumar: " << text << std::endl;
}

std::size_t PrintedMessageBoxes::Ask(std::string_view text,
                                     const std::vector<std::string>& answers) {
  std::cerr << "velumar: " << text << " " << answers.back() << std::endl;
  return answers.size() - 1;
}

UnansweredFolderDialog::UnansweredFolderDialog(std::function<void(const std::string& why)> fail)
    : fail_(std::move(fail)) {}

std::string UnansweredFolderDialog::BrowseForFolder(std::string_view prompt) {
  fail_("nobody is there to answer: " + std::string(prompt));
  return {};
}

}  // namespace velumar
