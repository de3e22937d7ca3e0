#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velumar {

enum class BoxIcon : std::uint8_t { kNone, kInformation, kExclamation };

class MessageBoxes {
 public:
  virtual ~MessageBoxes() = default;
  // A box with an OK button; the call returns when it was answered.
  virtual void Show(std::string_view text, BoxIcon icon) = 0;
  // The same under a title other than the program's name.
  virtual void ShowTitled(std::string_view title, std::string_view text, BoxIcon icon) = 0;
  // A box with a button for each answer; the index of the one that was clicked. The last is the one
  // that does least: closing the box means it.
  virtual std::size_t Ask(std::string_view text, const std::vector<std::string>& answers) = 0;
};

class FolderDialog {
 public:
  virtual ~FolderDialog() = default;
  // The chosen folder, or an empty text on cancel. A drive root keeps its closing separator.
  virtual std::string BrowseForFolder(std::string_view prompt) = 0;
};

// A form that a file can be saved in: "Pictures (*.bmp)" and "bmp".
struct FileForm {
  std::string title;
  std::string ending;
};

class SaveDialog {
 public:
  virtual ~SaveDialog() = default;
  // Opens in the folder of the last file and suggests a name, which has no ending. Returns the
  // chosen file, with the ending of the chosen form if none was typed; nothing on cancel. A file
  // that exists is only chosen if the user agreed to lose it.
  virtual std::optional<std::string> ChooseFile(const std::vector<FileForm>& forms,
                                                std::string_view suggestion) = 0;
};

class ColourDialog {
 public:
  virtual ~ColourDialog() = default;
  // In blue-green-red order; nothing on cancel.
  virtual std::optional<std::uint32_t> ChooseColour(std::uint32_t present) = 0;
};

class Clipboard {
 public:
  virtual ~Clipboard() = default;
  virtual void SetText(std::string_view text) = 0;
};

class Printers {
 public:
  virtual ~Printers() = default;
  virtual bool Any() const = 0;
  // Prints the report of the rows now in the ledger (0), or of an archived run, or makes the PDF
  // file of it where one is named. Throws std::runtime_error with the reason.
  virtual void PrintReport(int run, const std::string& pdf_file) = 0;
};

// The per-user store of texts of the application `Velumar`, section "Settings".
class SettingsStore {
 public:
  virtual ~SettingsStore() = default;
  // Nothing when the key isn't there.
  virtual std::optional<std::string> Read(std::string_view key) const = 0;
  // The same from another section, which only the user's own hand writes.
  virtual std::optional<std::string> ReadFrom(std::string_view section,
                                              std::string_view key) const = 0;
  // Where that hand finds the texts, as the path of a file.
  virtual std::string Place() const = 0;
  virtual void Save(std::string_view key, std::string_view text) = 0;
};

class Screen {
 public:
  virtual ~Screen() = default;
  virtual float WidthTwips() const = 0;
  virtual float HeightTwips() const = 0;
  // Whether any screen shows enough of a window there for a hand to take it. Twips.
  virtual bool Shows(float left, float top, float width, float height) const = 0;
};

class LocaleInfo {
 public:
  virtual ~LocaleInfo() = default;
  virtual std::string DateSeparator() const = 0;
  // In the letters d, M, y: "dd/MM/yyyy".
  virtual std::string ShortDatePattern() const = 0;
};

class WallClock {
 public:
  virtual ~WallClock() = default;
  virtual std::int32_t Today() const = 0;  // yyyymmdd, local
};

class Programs {
 public:
  virtual ~Programs() = default;
  // Starts a program in a normal window and doesn't wait for it. Everything before "MSWIN.EXE" in
  // the command line is one path, blanks included. Throws std::runtime_error naming the program.
  virtual void Start(std::string_view command_line) = 0;
  // Throws std::runtime_error when there is nothing to open the page with.
  virtual void OpenInBrowser(std::string_view address) = 0;
  // Ends the process at once, whatever runs.
  virtual void EndProcess() = 0;
};

}  // namespace velumar
