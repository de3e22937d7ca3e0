#include <QApplication>
#include <QTimer>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <iostream>
#include <memory>
#include <optional>
#include <stdexcept>

#include "app/services/qt_dialogs.h"
#include "app/services/qt_event_loop.h"
#include "app/services/qt_message_boxes.h"
#include "app/services/qt_printers.h"
#include "app/services/qt_screen.h"
#include "app/theme/dress.h"
#include "app/windows/desktop_view.h"
#include "app/wiring/auto_play.h"
#include "app/wiring/back_ends.h"
#include "app/wiring/display.h"
#include "app/wiring/mail_notice.h"
#include "app/wiring/options.h"
#include "app/wiring/run_key_filter.h"
#include "app/wiring/single_instance.h"
#include "app/wiring/start_failure.h"
#include "app/wiring/termination.h"
#include "app/wiring/unattended.h"
#include "base/dates.h"
#include "ledger/ledger.h"
#include "platform/command_line.h"
#include "platform/process_end.h"
#include "platform/web_client.h"
#include "shell/program.h"

namespace velumar {

namespace {

constexpr int kFailure = 1;
constexpr int kBadArguments = 2;

Appearance Dress(const Theme& theme, const LocaleInfo& locale) {
  constexpr int kDialogPixels = 13;
  Appearance look{theme, Typefaces::Installed(), QString::fromStdString(locale.ShortDatePattern())};
  DressApplication(theme);
  QApplication::setFont(look.faces.Plain(kDialogPixels));
  return look;
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

int Run(QApplication& application, const Options& options, SingleInstance& instance) {
  const std::string program_folder = QApplication::applicationDirPath().toStdString();
  BackEnds ends = SystemBackEnds(options, program_folder);
  QtEventLoop events;
  const std::unique_ptr<WebClient> web = SystemWebClient(events);
  QtMessageBoxes shown_boxes;
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
  ReleasingPrograms programs(*ends.programs, instance);
  Platform platform{.events = events,
                    .chart_windows = *ends.chart_windows,
                    .keys = *ends.keys,
                    .boxes = boxes,
                    .folders = folders,
                    .files = files,
                    .colours = colours,
                    .clipboard = clipboard,
                    .printers = printers,
                    .settings = *ends.settings,
                    .registry = *ends.registry,
                    .screen = screen,
                    .locale = *ends.locale,
                    .clock = *ends.clock,
                    .programs = programs,
                    .web = *web,
                    .program_folder = program_folder,
                    .default_data_dir = ends.default_data_dir,
                    .store_dir = {},
                    .ledger_file = ends.ledger_file};

  SimSession session;
  Desktop desktop;
  IndexCache cache;
  ThemeFollower theme(options.theme);
  DesktopView view(desktop, Dress(theme.Current(), *ends.locale),
                   [&boxes](const std::string& text) { boxes.Show(text, BoxIcon::kExclamation); });
  theme.OnChange([&view](const Theme& changed) { view.SetTheme(changed); });
  Program program(session, desktop, platform, cache, ledger);
  RunKeyFilter run_keys(program.Keys());
  const auto keys_from_chart = OpenMailbox(kRunKeyMailbox, [&run_keys](const Mail& mail) {
    if (mail.first == 0) return run_keys.ClickFromChart();
    run_keys.PressFromChart({.code = static_cast<int>(mail.first),
                             .shift = (mail.second & kMailShift) != 0,
                             .repeated = (mail.second & kMailRepeated) != 0});
  });
  instance.Listen([&] {
    program.ShowAgain();
    view.Raise();
    ends.chart_windows->BringToFront("Velumar");
  });
  AutoPlay auto_play({options.screenshot_dir, options.play}, desktop, view, session, program, Fail);
  const Termination termination([&] {
    // As the button "Close Program", which keeps the settings.
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

std::optional<Options> UsableOptions() {
  try {
    return ReadOptions(QApplication::arguments());
  } catch (const std::invalid_argument& error) {
    TellStartFailure(error.what());
    return std::nullopt;
  }
}

void NameApplication() {
  QCoreApplication::setApplicationName(QStringLiteral("velumar"));
  QCoreApplication::setApplicationVersion(QStringLiteral(VELUMAR_VERSION));
}

// Ends the process if the arguments are fine: help and version need no display.
int AnswerHelp(int argument_count, char** arguments) {
  const QCoreApplication application(argument_count, arguments);
  NameApplication();
  UsableOptions();
  return kBadArguments;
}

int Main(int argument_count, char** arguments) {
  if (AsksForHelp(argument_count, arguments)) return AnswerHelp(argument_count, arguments);
  if (const std::optional<std::string> missing = ChooseDisplay()) {
    TellStartFailure(*missing);
    return kFailure;
  }
  QApplication application(argument_count, arguments);
  NameApplication();
  // Windows come and go; the program ends by its own buttons.
  QApplication::setQuitOnLastWindowClosed(false);
  const std::optional<Options> options = UsableOptions();
  if (!options) return kBadArguments;
  SingleInstance instance(SettingsFolder(*options));
  if (instance.First()) return Run(application, *options, instance);
  if (instance.CallOther()) return EXIT_SUCCESS;
  TellStartFailure("another Velumar uses the settings in " +
                   SettingsFolder(*options).toStdString() + ", and doesn't answer here");
  return kFailure;
}

}  // namespace

}  // namespace velumar

int main(int argument_count, char** arguments) {
  try {
    return velumar::Main(argument_count, arguments);
  } catch (const std::exception& error) {
    velumar::TellStartFailure(error.what());
    return velumar::kFailure;
  }
}
