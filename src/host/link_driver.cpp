#include "host/link_driver.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <utility>

#include "base/ignoring.h"
#include "base/number_text.h"
#include "base/paths.h"
#include "platform/chart_program.h"
#include "platform/event_loop.h"
#include "session/plan_levels.h"
#include "trading/account.h"
#include "trading/position_book.h"
#include "trading/status_texts.h"

namespace velumar {

namespace {

using Command = ChartRequest::Command;

using std::chrono_literals::operator""ms;

constexpr auto kPatience = 2000ms;
// A program that has not answered once must not stop the replay for two seconds at each bar.
constexpr auto kShortPatience = 100ms;
constexpr std::chrono::milliseconds kStartTime{10000};
constexpr int kMostRestarts = 3;  // without a refresh that worked
constexpr std::chrono::milliseconds kLook{20};

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
  const std::uint32_t owner = ChartWindowProcess();
  if (owner == 0) return process_ != 0 ? Program::kGone : Program::kForeign;
  const bool patient = program_ != Program::kBusy && starting_ == 0;
  switch (platform_.chart_link->Ask(owner, {.command = Command::kHello},
                                    patient ? kPatience : kShortPatience)) {
    case LinkOutcome::kDone:
      if (std::exchange(process_, owner) != owner) dark_there_.reset();
      SendTheme();
      return Program::kAnswers;
    case LinkOutcome::kNoAnswer:
      return owner == process_ ? Program::kBusy : Program::kForeign;
    case LinkOutcome::kRefused:
    case LinkOutcome::kNotThere:
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
  if (!running && (starting_ > 0 || !StartProgram())) return;
  view_.SetStatusLine("Wait for  close all chart  ....");
  Ask({.command = Command::kCloseAll, .symbol = session_.Run.symbol}, kPatience);
}

// The new window takes the focus, and the trader's window gets it back.
bool LinkDriver::StartProgram() {
  const ScopedCounter starting(starting_);
  const FocusReturn returning(platform_.chart_windows, trader_);
  const ScopedCounter chart_comes = trader_.ExpectChart();
  std::string command_line = registry_.StartCommand() + OpeningArgument(session_.Run.symbol);
  if (dark_) command_line += *dark_ ? " --theme=dark" : " --theme=light";
  view_.SetStatusLine("Loading ... " + command_line);
  IgnoringErrors([&] { platform_.programs.Start(command_line); });
  view_.SetStatusLine("Wait  for  [Meta Stock] ready ....");
  // On the virtual clock only the waits take time.
  using Clock = std::chrono::steady_clock;
  const auto end = Clock::now() + kStartTime;
  for (auto waited = kLook; waited <= kStartTime && Clock::now() < end; waited += kLook) {
    WaitMilliseconds(platform_.events, static_cast<std::int16_t>(kLook.count()));
    program_ = Look();
    if (program_ != Program::kAnswers) continue;
    started_ = process_;
    return true;
  }
  return false;
}

void LinkDriver::OpenChart() {
  view_.SetStatusLine("Open data for [" + session_.Run.symbol + "] ....");
  const LinkOutcome outcome = Ask({.command = Command::kOpen,
                                   .folder = session_.SimDir,
                                   .symbol = session_.Run.symbol,
                                   .interval = IntervalOf(session_.Run),
                                   .alone = session_.Run.blind},
                                  kPatience);
  if (outcome == LinkOutcome::kRefused) {
    platform_.boxes.Show(CannotOpenChart("The chart program could not open the chart.", session_),
                         BoxIcon::kExclamation);
  }
  // If it was too busy to answer, the next refresh asks again.
  const bool answered = outcome == LinkOutcome::kDone || outcome == LinkOutcome::kRefused;
  opened_in_ = answered ? process_ : 0;
  view_.SetStatusLine("Ready to rock with [" + session_.Run.symbol + "] ....");
}

ChartTrouble LinkDriver::Refresh() {
  // A step in a wait of the start: the refresh that has started the program shows its bar too.
  if (starting_ > 0) return ChartProgramBusy();
  behind_ = false;
  if (program_ == Program::kGone && (++restarts_ > kMostRestarts || !StartProgram())) {
    return NoChartProgram();
  }
  behind_ = true;
  if (program_ == Program::kBusy) return ChartProgramBusy();
  if (opened_in_ != process_) OpenChart();
  RevaluePositions(session_);
  switch (Ask({.command = Command::kRefresh,
               .folder = session_.SimDir,
               .symbol = session_.Run.symbol,
               .positions = Positions()},
              kPatience)) {
    case LinkOutcome::kDone:
      behind_ = false;
      restarts_ = 0;
      return {};
    case LinkOutcome::kRefused:
      behind_ = false;
      restarts_ = 0;
      return {"No chart of this run is open! ",
              "Open the chart in the chart program (File > Open), or go back and press Start."};
    case LinkOutcome::kNoAnswer:
      return ChartProgramBusy();
    case LinkOutcome::kNotThere:
      break;
  }
  return NoChartProgram();  // the next refresh starts it again
}

void LinkDriver::ShowPositions() {
  if (program_ == Program::kForeign || starting_ > 0) return;
  const bool shown = program_ == Program::kAnswers && Ask({.command = Command::kPositions,
                                                           .folder = session_.SimDir,
                                                           .symbol = session_.Run.symbol,
                                                           .positions = Positions()},
                                                          kShortPatience) == LinkOutcome::kDone;
  if (!shown) behind_ = true;
}

void LinkDriver::TakePicture(const std::string& file) {
  if (program_ != Program::kAnswers || starting_ > 0 || behind_) return;
  Ask({.command = Command::kPicture,
       .folder = session_.SimDir,
       .symbol = session_.Run.symbol,
       .picture = file},
      kShortPatience);
}

// Orders and plans at bars that the replay has stepped back over are not shown, nor the oldest of
// very many.
ChartPositions LinkDriver::Positions() {
  constexpr std::ptrdiff_t kMostOrders = 2000;
  constexpr std::ptrdiff_t kMostPlanLines = 40;
  ChartPositions positions;
  const std::vector<OrderMark>& all = session_.Orders;
  const auto first = all.end() - std::min(std::ssize(all), kMostOrders);
  const auto reached = [this](const OrderMark& order) { return order.bar <= session_.BarIndex; };
  std::copy_if(first, all.end(), std::back_inserter(positions.orders), reached);
  if (session_.ShowsEarlier) {
    std::ranges::copy_if(session_.EarlierOrders, std::back_inserter(positions.orders), reached);
  }
  const auto add = [&](const Side& side, float profit) {
    const float held = session_.*side.Accum;
    if (held <= 0 || !std::isfinite(profit)) return;
    positions.held.push_back({side.gains_on_rise, session_.*side.AvgPrice, held, profit});
  };
  add(kLongSide, session_.LUnrealisedMoney);
  add(kShortSide, session_.SUnrealisedMoney);
  for (const PlanLevel& level : PlanLevels(session_)) {
    const bool waits = level.order == nullptr;
    if (std::isfinite(level.price)) {
      positions.plans.push_back({level.bar, level.price, level.stop, level.reached, waits});
    }
  }
  const auto too_many = std::ssize(positions.plans) - kMostPlanLines;
  positions.plans.erase(positions.plans.begin(),
                        positions.plans.begin() + std::max<std::ptrdiff_t>(too_many, 0));
  const OrderFigures figures =
      ReadOrderFigures(inputs_, session_.IsStockMarket(), inputs_.Quantity());
  positions.quantity = figures.problem.empty() ? figures.quantity : 0;
  positions.profit_per_point = session_.ProfitPerContract;
  return positions;
}

void LinkDriver::SetTheme(bool dark) {
  dark_ = dark;
  if (program_ == Program::kAnswers) SendTheme();
}

// A program that is busy gets it at the next look.
void LinkDriver::SendTheme() {
  if (!dark_ || dark_there_ == dark_) return;
  const ChartRequest request{.command = Command::kTheme, .dark = *dark_};
  if (Ask(request, kShortPatience) == LinkOutcome::kDone) dark_there_ = dark_;
}

// A program that hangs finds the request when it goes on.
void LinkDriver::QuitStarted() {
  for (std::chrono::milliseconds waited{0}; starting_ > 0 && waited < kPatience; waited += kLook) {
    if (Look() == Program::kAnswers) {
      started_ = process_;
      break;
    }
    platform_.events.Sleep(kLook);
  }
  if (started_ == 0) return;
  platform_.chart_link->Ask(started_, {.command = Command::kQuit}, kShortPatience);
}

// A program that does not answer in time counts as busy until it does.
LinkOutcome LinkDriver::Ask(const ChartRequest& request, std::chrono::milliseconds patience) {
  const LinkOutcome outcome = platform_.chart_link->Ask(process_, request, patience);
  if (outcome == LinkOutcome::kNoAnswer) program_ = Program::kBusy;
  return outcome;
}

}  // namespace velumar
