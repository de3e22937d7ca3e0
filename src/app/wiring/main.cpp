#include <QApplication>
#include <QTimer>
#include <chrono>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <iostream>
#include <memory>
#include <optional>
#include <stdexcept>

#include "app/services/desktop_services.h"
#include "app/theme/theme.h"
#include "app/windows/desktop_view.h"
#include "app/wiring/back_ends.h"
#include "app/wiring/chart_link.h"
#include "app/wiring/options.h"
#include "app/wiring/process.h"
#include "app/wiring/run_key_filter.h"
#include "app/wiring/single_instance.h"
#include "app/wiring/unattended.h"
#include "base/dates.h"
#include "base/paths.h"
#include "ledger/ledger.h"
#include "platform/chart_program.h"
#include "platform/ipc.h"
#include "platform/system.h"
#include "platform/user_files.h"
#include "platform/warn_once_settings.h"
#include "platform/web_client.h"
#include "shell/program.h"

namespace velumar {

namespace {

constexpr int kFailure = 1;
constexpr int kBadArguments = 2;
constexpr std::chrono::milliseconds kTick{1000};

Appearance ApplyLook(const Palette& palette, const LocaleInfo& locale) {
  constexpr int kDialogPixels = 13;
  Appearance look{palette, Typefaces::Installed(), ToQt(locale.ShortDatePattern())};
  ApplyTheme(palette);
  QApplication::setFont(look.faces.Plain(kDialogPixels));
  return look;
}

// Does a step of the start without which the program still works.
void Try(BackEnds& ends, const std::string& failure, const std::function<void()>& step) {
  try {
    step();
  } catch (const std::exception& error) {
    ends.problems.push_back(failure + error.what());
  }
}

// The option has priority over the setting.
bool UsesLink(const Options& options, const SettingsStore& settings) {
  return !options.chart_keys.value_or(settings.Read("ChartLink") == "keys");
}

void ShowProblems(MessageBoxes& boxes, const std::vector<std::string>& problems) {
  std::string all;
  for (const std::string& problem : problems) all += (all.empty() ? "" : "\n\n") + problem;
  if (!all.empty()) boxes.Show(all, BoxIcon::kExclamation);
}

[[noreturn]] void Fail(const std::string& why) {
  std::cerr << "velumar: " << why << std::endl;
  EndProcessAtOnce(kFailure);
}

// Closes what belongs to this process before it ends: the chart program and the lock of the
// settings folder.
class ReleasingPrograms : public Programs {
 public:
  ReleasingPrograms(Programs& programs, SingleInstance& instance)
      : programs_(programs), instance_(instance) {}

  void Start(std::string_view command_line) override { programs_.Start(command_line); }
  void OpenInBrowser(std::string_view address) override { programs_.OpenInBrowser(address); }
  void BeforeEnd(std::function<void()> work) { before_end_ = std::move(work); }
  void EndProcess() override {
    if (before_end_) before_end_();
    instance_.Release();
    programs_.EndProcess();
  }

 private:
  Programs& programs_;
  SingleInstance& instance_;
  std::function<void()> before_end_;
};

int Run(QApplication& application, const Options& options, SingleInstance& instance) {
  const std::string folder_text = QApplication::applicationDirPath().toStdString();
  const std::filesystem::path program_folder = NativePath(folder_text).make_preferred();
  BackEnds ends = SystemBackEnds(options);
  Try(ends, {},
      [&] { EnsureChartProgramKeys(*ends.registry, PathText(program_folder / "charthost")); });
  std::string samples;  // with a separator at the end
  Try(ends, "Could not copy the samples to your folder: ", [&] {
    samples = PathText(SampleDirectory(program_folder) / "");
  });
  const std::unique_ptr<EventLoop> events = WindowEvents();
  const std::unique_ptr<WebClient> web = SystemWebClient(*events);
  QtMessageBoxes shown_boxes(ToQt(ends.locale->ShortDatePattern()));
  PrintedMessageBoxes printed_boxes;
  QtFolderDialog shown_folders;
  UnansweredFolderDialog no_folders(Fail);
  const bool alone = options.PlaysAlone();
  MessageBoxes& boxes = alone ? static_cast<MessageBoxes&>(printed_boxes) : shown_boxes;
  FolderDialog& folders = alone ? static_cast<FolderDialog&>(no_folders) : shown_folders;
  QtScreen screen;
  const LocaleInfo& locale = *ends.locale;
  LedgerConnection ledger([&locale](std::string_view iso_date) {
    return IsoDateText(iso_date, locale.ShortDatePattern());
  });
  QtSaveDialog files(*ends.settings);
  QtColourDialog colours;
  QtClipboard clipboard;
  QtPrinters printers(ledger);
  WarnOnceSettings settings(*ends.settings, boxes);
  IpcChartLink chart_link;
  ReleasingPrograms programs(*ends.programs, instance);
  Platform platform{.events = *events,
                    .chart_windows = *ends.chart_windows,
                    .keys = *ends.keys,
                    .boxes = boxes,
                    .folders = folders,
                    .files = files,
                    .colours = colours,
                    .clipboard = clipboard,
                    .printers = printers,
                    .settings = settings,
                    .registry = *ends.registry,
                    .screen = screen,
                    .locale = *ends.locale,
                    .clock = *ends.clock,
                    .programs = programs,
                    .web = *web,
                    .program_folder = folder_text,
                    .default_data_dir = samples,
                    .store_dir = {},
                    .ledger_file = PathText(LedgerFile(program_folder)),
                    .chart_link = UsesLink(options, settings) ? &chart_link : nullptr,
                    .chart_folder = PathText(program_folder / "charthost")};

  SimSession session;
  Desktop desktop;
  IndexCache cache;
  ThemeFollower theme(options.theme);
  DesktopView view(desktop, ApplyLook(theme.Current(), *ends.locale),
                   [&boxes](const std::string& text) { boxes.Show(text, BoxIcon::kExclamation); });
  Program program(session, desktop, platform, cache, ledger);
  if (options.theme != ThemeChoice::kSystem) program.SetTheme(theme.Current().dark);
  theme.OnChange([&view, &program](const Palette& changed) {
    view.SetTheme(changed);
    program.SetTheme(changed.dark);
  });
  programs.BeforeEnd([&program] { program.QuitChartProgram(); });
  RunKeyFilter run_keys(program.Keys());
  const auto keys_from_chart =
      ListenForMessages(kRunKeyListener, [&program, &run_keys](const IpcMessage& message) {
        if (message.first == 0) return run_keys.ClickFromChart();
        if (message.first == kMessageChartClosed)
          return program.ChartClosedByTrader(message.second);
        const auto number = static_cast<int>(message.second);
        if (message.first == kMessageCompare) return program.Compare(number);
        if (message.first == kMessageEndCompare) return program.EndCompare(number);
        if ((message.second & kMessageReleased) != 0) return run_keys.ReleaseFromChart();
        run_keys.PressFromChart({.code = static_cast<int>(message.first),
                                 .shift = (message.second & kMessageShift) != 0,
                                 .repeated = (message.second & kMessageRepeated) != 0});
      });
  QTimer ticks;
  QObject::connect(&ticks, &QTimer::timeout, [&program] { program.Tick(); });
  ticks.start(kTick);
  instance.Listen([&] {
    program.ShowAgain();
    view.Raise();
    ends.chart_windows->BringToFront("Velumar");
  });
  const FailRun fail = [&program](const std::string& why) {
    program.QuitChartProgram();
    Fail(why);
  };
  AutoPlay auto_play({options.screenshot_dir, options.play}, desktop, view, session, program, fail);
  const auto termination = WatchForTermination([&] {
    // Closing the setup window saves the settings.
    const Form1& setup = desktop.Untouched().form1;
    const auto close = setup.on_close;
    setup.Loaded() ? close() : platform.programs.EndProcess();
  });

  QTimer::singleShot(0, &application, [&] {
    ShowProblems(boxes, ends.problems);
    program.Start();
    if (alone) auto_play.Begin();
  });
  return QApplication::exec();
}

// Nothing if an argument is wrong, after reporting it.
std::optional<Options> UsableOptions() {
  try {
    return ReadOptions(QApplication::arguments());
  } catch (const std::invalid_argument& error) {
    ReportStartFailure(error.what());
    return std::nullopt;
  }
}

void NameApplication() {
  QCoreApplication::setApplicationName(QStringLiteral("velumar"));
  QCoreApplication::setApplicationVersion(QStringLiteral(VELUMAR_VERSION));
}

// Help and version need no display. Returns only if an argument is wrong.
int AnswerHelp(int argument_count, char** arguments) {
  const QCoreApplication application(argument_count, arguments);
  NameApplication();
  UsableOptions();
  return kBadArguments;
}

int Main(int argument_count, char** arguments) {
  if (AsksForHelp(argument_count, arguments)) return AnswerHelp(argument_count, arguments);
  if (const std::optional<std::string> missing = ChooseDisplay()) {
    ReportStartFailure(*missing);
    return kFailure;
  }
  QApplication application(argument_count, arguments);
  NameApplication();
  // Windows come and go; only the program's own buttons end it.
  QApplication::setQuitOnLastWindowClosed(false);
  const std::optional<Options> options = UsableOptions();
  if (!options) return kBadArguments;
  SingleInstance instance(SettingsFolder(*options));
  if (instance.First()) return Run(application, *options, instance);
  if (instance.CallOther()) return EXIT_SUCCESS;
  ReportStartFailure(
      "another Velumar uses the settings in " + SettingsFolder(*options).toStdString() +
      " and does not answer. Close it, or choose other settings with --settings-dir.");
  return kFailure;
}

}  // namespace

}  // namespace velumar

int main(int argument_count, char** arguments) {
  try {
    return velumar::Main(argument_count, arguments);
  } catch (const std::exception& error) {
    velumar::ReportStartFailure(error.what());
    return velumar::kFailure;
  }
}
