#pragma once

#include <QString>

#include "platform/services.h"

namespace velumar {

class QtFolderDialog : public FolderDialog {
 public:
  std::string BrowseForFolder(std::string_view prompt) override;
};

// Keeps the folder of the last file in the settings, as "SaveFolder".
class QtSaveDialog : public SaveDialog {
 public:
  explicit QtSaveDialog(SettingsStore& settings) : settings_(settings) {}
  std::optional<std::string> ChooseFile(const std::vector<FileForm>& forms,
                                        std::string_view suggestion) override;

 private:
  QString Folder() const;
  void KeepFolderOf(const QString& file);

  SettingsStore& settings_;
  QString folder_;  // of the last file, even if the settings can't be saved
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
