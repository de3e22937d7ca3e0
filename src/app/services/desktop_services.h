#pragma once

#include <QString>
#include <utility>

#include "platform/services.h"

namespace velumar {

class QtMessageBoxes : public MessageBoxes {
 public:
  // The pattern of dates in boxes, in the letters d, M, y.
  explicit QtMessageBoxes(QString date_format = {}) : date_format_(std::move(date_format)) {}
  void Show(std::string_view text, BoxIcon icon) override;
  void ShowTitled(std::string_view title, std::string_view text, BoxIcon icon) override;
  std::size_t Ask(std::string_view text, const std::vector<std::string>& answers) override;
  std::optional<std::int32_t> AskDate(std::string_view text, std::int32_t first, std::int32_t last,
                                      std::int32_t present) override;

 private:
  QString date_format_;
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

// The primary screen; a logical pixel is 15 twips.
class QtScreen : public Screen {
 public:
  float WidthTwips() const override;
  float HeightTwips() const override;
  bool Shows(float left, float top, float width, float height) const override;
};

class QtClipboard : public Clipboard {
 public:
  void SetText(std::string_view text) override;
};

}  // namespace velumar
