#pragma once

#include <QString>

#include "platform/services.h"

namespace velumar {

class QtMessageBoxes : public MessageBoxes {
 public:
  void Show(std::string_view text, BoxIcon icon) override;
  void ShowTitled(std::string_view title, std::string_view text, BoxIcon icon) override;
  std::size_t Ask(std::string_view text, const std::vector<std::string>& answers) override;
};

class QtFolderDialog : public FolderDialog {
 public:
  std::string BrowseForFolder(std::string_view prompt) override;
};

// Saves the folder of the last file in the settings, as "SaveFolder".
class QtSaveDialog : public SaveDialog {
 public:
  explicit QtSaveDialog(SettingsStore& settings) : settings_(settings) {}
  std::optional<std::string> ChooseFile(const std::vector<FileForm>& forms,
                                        std::string_view suggestion) override;

 private:
  QString Folder() const;
  void SaveFolderOf(const QString& file);

  SettingsStore& settings_;
  QString folder_;  // of the last file, even if the settings could not be saved
};

class QtColourDialog : public ColourDialog {
 public:
  std::optional<std::uint32_t> ChooseColour(std::uint32_t current) override;
};

}  // namespace velumar
