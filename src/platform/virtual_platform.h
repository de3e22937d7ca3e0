#pragma once

#include <chrono>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/platform.h"
#include "platform/warn_once_settings.h"

namespace velumar {

// A clock that moves only when the program waits, so a run of a thousand bars takes only its
// computing time. Scheduled events run, in order, inside the wait that reaches their time.
class VirtualEventLoop : public EventLoop {
 public:
  using Milliseconds = std::chrono::milliseconds;

  void ProcessPending() override;
  void WaitFor(Milliseconds time) override;
  void Sleep(Milliseconds time) override { now_ += time; }

  // Runs the event `delay` from now.
  void Schedule(Milliseconds delay, std::function<void()> event);
  // Runs at every ProcessPending, after scheduled events.
  void SetOnPending(std::function<void()> on_pending) { on_pending_ = std::move(on_pending); }
  Milliseconds Now() const override { return now_; }

 private:
  void RunDue(Milliseconds until);

  Milliseconds now_{0};
  std::multimap<Milliseconds, std::function<void()>> scheduled_;
  std::function<void()> on_pending_;
};

// A chart program that is always running, accepts every key at once and records them.
class RecordingChart : public ChartWindows, public KeySender {
 public:
  static constexpr WindowId kWindow = 1;
  static constexpr WindowId kOwnWindow = 2;
  static constexpr WindowId kOtherWindow = 3;

  std::vector<WindowId> TopLevelWindows() override;
  std::string WindowTitle(WindowId window) override;
  bool IsWindowVisible(WindowId window) override { return window != hidden; }
  bool HasOwner(WindowId) override { return false; }
  void Maximize(WindowId window) override { maximized.push_back(window); }
  bool BringToFront(std::string_view title) override;
  std::uint32_t ProcessOf(std::string_view) override { return running ? process : 0; }
  WindowId FocusedWindow() override { return focused; }
  WindowOwner OwnerOf(WindowId window) override;
  bool GiveFocus(WindowId window) override;
  bool FileDialogExists() override { return dialog_comes; }
  KeyOutcome Send(std::string_view keys) override;
  KeyOutcome SendInBackground(std::string_view keys) override;

  // Settings for tests and scripts.
  bool running = true;
  bool dialog_comes = true;
  std::uint32_t process = 100;
  KeyOutcome outcome = KeyOutcome::kAccepted;

  std::vector<std::string> sent;
  std::vector<WindowId> maximized;
  WindowId focused = kOwnWindow;
  WindowId hidden = 0;
  std::string front;  // title last brought to the front
};

// Answers boxes with OK, and questions with the prepared answers or their last one.
class RecordingBoxes : public MessageBoxes {
 public:
  void Show(std::string_view text, BoxIcon) override;
  void ShowTitled(std::string_view title, std::string_view text, BoxIcon) override {
    shown.emplace_back(std::string(title) + ": " + std::string(text));
  }
  std::size_t Ask(std::string_view text, const std::vector<std::string>& offered) override;
  std::optional<std::int32_t> AskDate(std::string_view text, std::int32_t first, std::int32_t last,
                                      std::int32_t present) override {
    shown.emplace_back(text);
    days = {first, last, present};
    return date;
  }
  std::vector<std::string> shown;
  std::vector<std::size_t> answers;
  std::optional<std::int32_t> date;
  std::vector<std::int32_t> days;  // of the last question about a date: first, last, present
  std::function<void()> on_show;   // runs once, while the next box is open
};

// Returns the prepared folders in turn. Throws std::runtime_error if none is left, since nobody is
// there to choose one.
class ScriptedFolders : public FolderDialog {
 public:
  std::string BrowseForFolder(std::string_view prompt) override;
  std::vector<std::string> answers;
};

// Returns the prepared files in turn; a dialog without one is cancelled.
class ScriptedFiles : public SaveDialog {
 public:
  std::optional<std::string> ChooseFile(const std::vector<FileForm>& forms,
                                        std::string_view suggestion) override;
  std::vector<std::string> answers;
  std::string suggested;          // by the last call
  std::vector<FileForm> offered;  // by the last call
};

class ScriptedColours : public ColourDialog {
 public:
  std::optional<std::uint32_t> ChooseColour(std::uint32_t) override;
  std::optional<std::uint32_t> answer;
  std::string failure;  // thrown if not empty
};

class MemoryClipboard : public Clipboard {
 public:
  void SetText(std::string_view new_text) override { text = new_text; }
  std::string text;
};

class FixedPrinters : public Printers {
 public:
  bool Any() const override { return any; }
  void PrintReport(LedgerScope scope, const std::string& pdf_file) override {
    const bool session = scope.kind == LedgerScope::Kind::kSession;
    printed.push_back((session ? "session " : "run ") + std::to_string(scope.number) + ":" +
                      pdf_file);
  }
  void SaveCoachReport(const CoachReport& report, const std::string& file) override {
    if (on_coach_report) on_coach_report(report, file);
  }
  bool any = false;
  std::vector<std::string> printed;
  std::function<void(const CoachReport& report, const std::string& file)> on_coach_report;
};

class MemorySettings : public SettingsStore {
 public:
  std::optional<std::string> ReadFrom(std::string_view section,
                                      std::string_view key) const override;
  std::string Place() const override { return "settings"; }
  void Save(std::string_view key, std::string_view text) override;
  std::map<std::string, std::string, std::less<>> texts;  // other sections' as "Section/Key"
  std::string failure;                                    // why nothing can be saved
};

// A registry in memory. Names are case-sensitive.
class MemoryRegistry : public Registry {
 public:
  bool HasKey(RegistryRoot root, std::string_view key) override {
    return Find(root, key) != nullptr;
  }
  long CreateKey(RegistryRoot root, std::string_view key) override;
  long ReadText(std::string_view key, std::string_view name, std::string& text) override;
  long WriteText(std::string_view key, std::string_view name, std::string_view text) override;

 private:
  using Values = std::map<std::string, std::string, std::less<>>;
  Values* Find(RegistryRoot root, std::string_view key);

  std::map<std::pair<RegistryRoot, std::string>, Values> keys_;
};

class FixedScreen : public Screen {
 public:
  float WidthTwips() const override { return width; }
  float HeightTwips() const override { return height; }
  bool Shows(float left, float top, float window_width, float window_height) const override;
  float width = 15360;
  float height = 11520;
};

class FixedLocale : public LocaleInfo {
 public:
  std::string DateSeparator() const override { return separator; }
  std::string ShortDatePattern() const override { return pattern; }
  std::string separator = "/";
  std::string pattern = "M/d/yyyy";
};

class FixedClock : public WallClock {
 public:
  std::int32_t Today() const override { return today; }
  std::string UtcMoment() const override { return moment; }
  std::string LocalMoment(const std::string& utc) const override { return utc; }
  std::int32_t today = 20071018;
  std::string moment = "2007-10-18 09:30:00";
};

// Answers with the prepared texts in turn and records the requests, without a network.
class ScriptedWeb : public WebClient {
 public:
  std::string Get(const std::string& address, std::string_view target,
                  const std::function<bool()>& wanted) override;
  std::vector<std::string> asked;
  std::vector<std::string> answers;      // if none is left, the request fails
  std::function<void()> during_request;  // runs during a request
};

class RecordingPrograms : public Programs {
 public:
  void Start(std::string_view command_line) override {
    started.emplace_back(command_line);
    if (on_start) on_start();
  }
  void OpenInBrowser(std::string_view address) override { opened.emplace_back(address); }
  void EndProcess() override { ended = true; }
  std::function<void()> on_start;
  std::vector<std::string> started;
  std::vector<std::string> opened;
  bool ended = false;
};

// A complete platform in memory, without a display or a second program.
struct VirtualPlatform {
  VirtualEventLoop events;
  RecordingChart chart;
  RecordingBoxes boxes;
  ScriptedFolders folders;
  ScriptedFiles files;
  ScriptedColours colours;
  MemoryClipboard clipboard;
  FixedPrinters printers;
  MemorySettings settings;
  MemoryRegistry registry;
  FixedScreen screen;
  FixedLocale locale;
  FixedClock clock;
  RecordingPrograms programs;
  ScriptedWeb web;

  // References into this object, which must outlive them. Settings that can't be saved are
  // reported once, as in the program.
  Platform References();

 private:
  WarnOnceSettings warning_settings_{settings, boxes};
};

}  // namespace velumar
