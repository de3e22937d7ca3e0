#pragma once

#include <functional>
#include <string>

#include "platform/services.h"

namespace velumar {

// What stands for the user in runs that nobody watches: the text of a box goes to the standard
// error output, and it counts as answered, a question by its last answer.
class PrintedMessageBoxes : public MessageBoxes {
 public:
  void Show(std::string_view text, BoxIcon icon) override;
  void ShowTitled(std::string_view, std::string_view text, BoxIcon icon) override {
    Show(text, icon);
  }
  std::size_t Ask(std::string_view text, const std::vector<std::string>& answers) override;
};

// Nobody can choose a folder either, so such a run ends: `fail` doesn't come back.
class UnansweredFolderDialog : public FolderDialog {
 public:
  explicit UnansweredFolderDialog(std::function<void(const std::string& why)> fail);
  std::string BrowseForFolder(std::string_view prompt) override;

 private:
  std::function<void(const std::string& why)> fail_;
};

}  // namespace velumar
