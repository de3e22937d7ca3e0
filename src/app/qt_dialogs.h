#pragma once

#include "platform/services.h"

namespace velumar {

class QtFolderDialog : public FolderDialog {
 public:
  std::string BrowseForFolder(std::string_view prompt) override;
};

class QtSaveDialog : public SaveDialog {
 public:
  std::optional<std::string> ChooseFile(const std::vector<FileForm>& forms) override;
};

class QtColourDialog : public ColourDialog {
 public:
  std::optional<std::uint32_t> ChooseColour(std::uint32_t present) override;
};

class QtClipboard : public Clipboard {
 public:
  void SetText(std::string_view text) override;
};

}  // namespace velumar
