#pragma once

#include <QString>
#include <functional>
#include <memory>
#include <utility>

#include "ledger/ledger.h"
#include "platform/event_loop.h"
#include "platform/services.h"

class QPagedPaintDevice;

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

// Prints what `print` draws on the default printer. The quality is -2 (low), -3 or -4 (high).
// Throws std::runtime_error with the name of the printer and the reason, as far as it is known.
void PrintOnPaper(int quality, const std::function<void(QPagedPaintDevice& device)>& print);

class QtPrinters : public Printers {
 public:
  explicit QtPrinters(LedgerConnection& ledger) : ledger_(ledger) {}
  bool Any() const override;
  void PrintReport(LedgerScope scope, const std::string& pdf_file) override;
  void SaveCoachReport(const CoachReport& report, const std::string& file) override;

 private:
  LedgerConnection& ledger_;
};

// The window events of this process. Once the application quits, waits return at once.
std::unique_ptr<EventLoop> WindowEvents();

}  // namespace velumar
