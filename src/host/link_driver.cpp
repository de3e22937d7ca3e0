#include "host/link_driver.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "base/ignoring.h"
#include "base/number_text.h"
#include "base/paths.h"
#include "platform/chart_program.h"
#include "platform/event_loop.h"
#include "trading/position_book.h"
#include "trading/status_texts.h"

namespace velumar {

namespace {

using Command = ChartRequest::Command;

constexpr std::chrono::milliseconds kPatience{2000};
// A program that has not answered once must not stop the replay for two seconds at each bar.
constexpr std::chrono::milliseconds kPatienceWithBusy{200};
constexpr int kStartMs = 10000;
constexpr int kMostRestarts = 3;  // without a refresh that worked
constexpr int kLookMs = 20;

// Minutes, -1 for daily bars.
std::optional<int> IntervalOf(const RunSeries& series) {
  if (series.interval == "D") return -1;
  const std::optional<std::int16_t> minutes = ToInt16(series.interval);
  return minutes ? std::optional<int>(*minutes) : std::nullopt;
}

// What the program shows until its first chart is open. Blanks end an argument of a command line,
// so they are percent-encoded.
std::string OpeningArgument(const std::string& symbol) {
  std::string argument = " --opening=";
  for (const char c : symbol) {
    if (c == ' ') {
      argument += "%20";
    } else if (c == '%') {
      argument += "%25";
    } else {
      argument += c;
    }
  }
  return argument;
}

}  // namespace

bool LinkDriver::Reaches() {
  program_ = Look();
  return program_ != Program::kForeign;
}

LinkDriver::Program LinkDriver::Look() {
  if (platform_.chart_link == nullptr) return Program::kForeign;
  const LinkAnswer answer = platform_.chart_link->Ask(
      {.command = Command::kHello}, program_ == Program::kBusy ? kPatienceWithBusy : kPatience);
  const std::uint32_t owner = ChartWindowProcess();
  switch (answer.outcome) {
    case LinkOutcome::kDone:
      if (owner != 0 && owner != answer.process) return Program::kForeign;
      if (std::exchange(process_, answer.process) != answer.process) SendTheme();
      return Program::kAnswers;
    case LinkOutcome::kNoAnswer:
      return owner != 0 && owner == process_ ? Program::kBusy : Program::kForeign;
    case LinkOutcome::kNotThere:
      return owner == 0 && process_ != 0 ? Program::kGone : Program::kForeign;
    case LinkOutcome::kRefused:
      break;
  }
  return Program::kForeign;
}

std::uint32_t LinkDriver::ChartWindowProcess() {
  std::uint32_t process = 0;
  IgnoringErrors([&] { process = platform_.chart_windows.ProcessOf(session_.HostTitle); });
  return process;
}

bool LinkDriver::CanStart() {
  return platform_.chart_link != nullptr && ChartWindowProcess() == 0 &&
         NativePath(registry_.ProgramFolder()).lexically_normal() ==
             NativePath(platform_.chart_folder).lexically_normal();
}

void LinkDriver::CloseCharts() {
  trader_.ComeToRun();
  view_.SetStatusLine(kLoadingNotice);
  const bool running = program_ == Program::kAnswers || program_ == Program::kBusy;
  if (!running && !StartProgram()) return;
  view_.SetStatusLine("Wait for  close all chart  ....");
  Ask({.command = Command::kCloseAll});
}

// The new window takes the focus, and the trader's window gets it back.
bool LinkDriver::StartProgram() {
  const FocusReturn returning(platform_.chart_windows, trader_);
  const ScopedCounter chart_comes = trader_.ExpectChart();
  std::string command_line = registry_.StartCommand() + OpeningArgument(session_.Run.symbol);
  if (dark_) command_line += *dark_ ? " --theme=dark" : " --theme=light";
  view_.SetStatusLine("Loading ... " + command_line);
  IgnoringErrors([&] { platform_.programs.Start(command_line); });
  view_.SetStatusLine("Wait  for  [Meta Stock] ready ....");
  for (int waited = 0; waited < kStartMs; waited += kLookMs) {
    WaitMilliseconds(platform_.events, kLookMs);
    program_ = Look();
    if (program_ != Program::kAnswers) continue;
    started_ = process_;
    return true;
  }
  return false;
}

void LinkDriver::OpenChart() {
  view_.SetStatusLine("Open data for [" + session_.Run.symbol + "] ....");
  const LinkAnswer answer = Ask({.command = Command::kOpen,
                                 .folder = session_.SimDir,
                                 .symbol = session_.Run.symbol,
                                 .interval = IntervalOf(session_.Run)});
  if (answer.outcome == LinkOutcome::kRefused) {
    platform_.boxes.Show(CannotOpenChart("The chart program could not open the chart.", session_),
                         BoxIcon::kExclamation);
  }
  // If it was too busy to answer, the next refresh asks again.
  opened_in_ = answer.outcome == LinkOutcome::kNoAnswer ? 0 : process_;
  view_.SetStatusLine("Ready to rock with [" + session_.Run.symbol + "] ....");
}

ChartTrouble LinkDriver::Refresh() {
  if (program_ == Program::kGone && (++restarts_ > kMostRestarts || !StartProgram())) {
    return NoChartProgram();
  }
  if (program_ == Program::kBusy) return ChartProgramBusy();
  if (opened_in_ != process_) OpenChart();
  RevaluePositions(session_);
  const LinkAnswer answer = Ask({.command = Command::kRefresh,
                                 .folder = session_.SimDir,
                                 .symbol = session_.Run.symbol,
                                 .positions = Positions()});
  switch (answer.outcome) {
    case LinkOutcome::kDone:
      restarts_ = 0;
      return {};
    case LinkOutcome::kRefused:
      return {};
    case LinkOutcome::kNoAnswer:
      program_ = Program::kBusy;
      return ChartProgramBusy();
    case LinkOutcome::kNotThere:
      break;
  }
  return NoChartProgram();  // the next refresh starts it again
}

void LinkDriver::ShowPositions() {
  Ask({.command = Command::kPositions,
       .folder = session_.SimDir,
       .symbol = session_.Run.symbol,
       .positions = Positions()});
}

// Orders at bars that the replay has stepped back over are not shown.
ChartPositions LinkDriver::Positions() {
  ChartPositions positions;
  std::copy_if(session_.Orders.begin(), session_.Orders.end(), std::back_inserter(positions.orders),
               [this](const OrderMark& order) { return order.bar <= session_.BarIndex; });
  const auto add = [&](const Side& side, float profit) {
    const float held = session_.*side.Accum;
    if (held <= 0) return;
    positions.held.push_back({side.gains_on_rise, session_.*side.AvgPrice, held, profit});
  };
  add(kLongSide, session_.LUnrealisedMoney);
  add(kShortSide, session_.SUnrealisedMoney);
  return positions;
}

void LinkDriver::SetTheme(bool dark) {
  dark_ = dark;
  if (Reaches() && program_ == Program::kAnswers) SendTheme();
}

void LinkDriver::QuitStarted() {
  if (started_ != 0 && Look() == Program::kAnswers && process_ == started_) {
    Ask({.command = Command::kQuit});
  }
}

void LinkDriver::SendTheme() {
  if (dark_) Ask({.command = Command::kTheme, .dark = *dark_});
}

LinkAnswer LinkDriver::Ask(const ChartRequest& request) {
  return platform_.chart_link->Ask(request, kPatience);
}

}  // namespace velumar
