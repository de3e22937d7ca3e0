#include "app/unattended.h"

#include <iostream>
#include <utility>

namespace velumar {

void PrintedMessageBoxes::Show(std::string_view text, BoxIcon) {
  std::cerr << "velumar: " << text << std::endl;
}

UnansweredFolderDialog::UnansweredFolderDialog(std::function<void(const std::string& why)> fail)
    : fail_(std::move(fail)) {}

std::string UnansweredFolderDialog::BrowseForFolder(std::string_view prompt) {
  fail_("nobody is there to answer: " + std::string(prompt));
  return {};
}

}  // namespace velumar
