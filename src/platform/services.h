#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/ledger_scope.h"

namespace velumar {

enum class BoxIcon : std::uint8_t { kNone, kInformation, kExclamation };

class MessageBoxes {
 public:
  virtual ~MessageBoxes() = default;
  // Shows a box with an OK button and returns once it is closed. Events run while it is open.
  virtual void Show(std::string_view text, BoxIcon icon) = 0;
  // The same with a title other than the program's name.
  virtual void ShowTitled(std::string_view title, std::string_view text, BoxIcon icon) = 0;
  // Shows a box with a button for each answer and returns the index of the clicked one. Closing the
  // box counts as the last answer, which must be harmless.
  virtual std::size_t Ask(std::string_view text, const std::vector<std::string>& answers) = 0;
  // Asks for a day, with `present` entered; one before `first` or after `last` counts as that.
  // Days are yyyymmdd. Returns nothing on cancel.
  virtual std::optional<std::int32_t> AskDate(std::string_view text, std::int32_t first,
                                              std::int32_t last, std::int32_t present) = 0;
};

class FolderDialog {
 public:
  virtual ~FolderDialog() = default;
  // Returns the chosen folder, or an empty text on cancel. A drive root keeps its separator.
  virtual std::string BrowseForFolder(std::string_view prompt) = 0;
};

// A file type for saving: "Pictures (*.bmp)" and "bmp".
struct FileForm {
  std::string title;
  std::string ending;
};

class SaveDialog {
 public:
  virtual ~SaveDialog() = default;
  // Opens in the folder of the last file and suggests a name without an ending. Returns the chosen
  // file, with the ending of the chosen type if none was typed; nothing on cancel. The user has
  // agreed to overwrite a file that exists.
  virtual std::optional<std::string> ChooseFile(const std::vector<FileForm>& forms,
                                                std::string_view suggestion) = 0;
};

class ColourDialog {
 public:
  virtual ~ColourDialog() = default;
  // Colours are 0xBBGGRR. Returns nothing on cancel.
  virtual std::optional<std::uint32_t> ChooseColour(std::uint32_t present) = 0;
};

class Clipboard {
 public:
  virtual ~Clipboard() = default;
  virtual void SetText(std::string_view text) = 0;
};

struct CoachReport;  // progress/coach_report.h

class Printers {
 public:
  virtual ~Printers() = default;
  virtual bool Any() const = 0;
  // Prints the report of a run or session, or writes it to `pdf_file` if that isn't empty. Throws
  // std::runtime_error with the reason.
  virtual void PrintReport(LedgerScope scope, const std::string& pdf_file) = 0;
  // Saves a report over all sessions as .pdf or .html. Throws std::runtime_error with the reason.
  virtual void SaveCoachReport(const CoachReport& report, const std::string& file) = 0;
};

// The user's settings of the application `Velumar`: texts in sections, its own in kSection.
class SettingsStore {
 public:
  static constexpr std::string_view kSection = "Settings";

  virtual ~SettingsStore() = default;
  // Returns nothing for a missing key.
  std::optional<std::string> Read(std::string_view key) const { return ReadFrom(kSection, key); }
  // The same for another section, which only the user edits.
  virtual std::optional<std::string> ReadFrom(std::string_view section,
                                              std::string_view key) const = 0;
  // Where the user finds the settings, as a file path or registry key.
  virtual std::string Place() const = 0;
  // Throws std::runtime_error with the reason if the text can't be saved.
  virtual void Save(std::string_view key, std::string_view text) = 0;
};

class Screen {
 public:
  virtual ~Screen() = default;
  virtual float WidthTwips() const = 0;
  virtual float HeightTwips() const = 0;
  // Returns true if a screen shows enough of a window at that place to drag it. Twips.
  virtual bool Shows(float left, float top, float width, float height) const = 0;
};

class LocaleInfo {
 public:
  virtual ~LocaleInfo() = default;
  virtual std::string DateSeparator() const = 0;
  // A pattern of d, M and y: "dd/MM/yyyy".
  virtual std::string ShortDatePattern() const = 0;
};

class WallClock {
 public:
  virtual ~WallClock() = default;
  virtual std::int32_t Today() const = 0;     // yyyymmdd, local
  virtual std::string UtcMoment() const = 0;  // "2026-11-27 07:03:40"
  // The local moment of such a text; any other text is returned as it is.
  virtual std::string LocalMoment(const std::string& utc) const = 0;
};

class Programs {
 public:
  virtual ~Programs() = default;
  // Starts a program in a normal window, without waiting for it. SplitCommandLine says how the
  // command line is read. Throws std::runtime_error naming the program.
  virtual void Start(std::string_view command_line) = 0;
  // Throws std::runtime_error if there is no program to open the page with.
  virtual void OpenInBrowser(std::string_view address) = 0;
  // Ends the process at once, without destructors.
  virtual void EndProcess() = 0;
};

}  // namespace velumar
