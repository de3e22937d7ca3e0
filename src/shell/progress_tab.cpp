#include "shell/progress_tab.h"

#include <algorithm>
#include <array>
#include <initializer_list>
#include <set>
#include <utility>

#include "base/dates.h"
#include "base/number_text.h"
#include "base/text.h"
#include "progress/findings.h"
#include "progress/pictures.h"
#include "progress/played_ledger.h"
#include "progress/trade_export.h"
#include "session/played_trades.h"
#include "shell/event_guard.h"

namespace velumar {

namespace {

constexpr std::string_view kComputing = "Computing the figures";
constexpr std::array kPeriodDays = {0, 7, 30, 90, 365};  // in the order of the list

enum Comparison { kNone, kAllOthers, kTimeBefore };

// Ends a computation that nobody waits for any more.
struct Superseded {};

// "2026-11-27", so many days before today.
std::string DayBefore(std::int32_t today, int days) { return IsoDate(DaysLater(today, -days)); }

std::vector<ComboBox::Row> RowsOf(const std::string& any, const std::vector<std::string>& names) {
  std::vector<ComboBox::Row> rows{{any}};
  rows.reserve(names.size() + 1);
  for (const std::string& name : names) rows.push_back({name});
  return rows;
}

std::string IntervalLabel(std::int32_t interval) {
  return interval == kAbsent ? "Daily bars" : std::to_string(interval) + "-minute bars";
}

// The row of a list after "any"; nothing for that one.
std::optional<int> Chosen(const ComboBox& list) {
  return list.Index() > 0 ? std::optional(list.Index() - 1) : std::nullopt;
}

}  // namespace

ProgressTab::ProgressTab(Desktop& desktop, Platform& platform, LedgerConnection& ledger,
                         IndexCache& cache)
    : desktop_(desktop), platform_(platform), ledger_(ledger), cache_(cache) {
  const EventGuard guarded(platform_.boxes);
  ProgressControls& controls = Controls();
  for (ComboBox* const list : controls.Lists()) {
    list->on_click = guarded(kComputing, [this] { Recompute(); });
  }
  controls.chkLookAhead.on_click = controls.cbxOfSide.on_click;
  controls.cbxPicture.on_click = guarded("Drawing the picture", [this] { ShowPicture(); });
  controls.cmdSavePicture.on_click = guarded("Saving the picture", [this] { SavePicture(); });
  controls.lstFigures.on_copy =
      guarded("Copying", [this] { platform_.clipboard.SetText(Controls().lstFigures.CopyText()); });
}

void ProgressTab::SetUp() {
  scopes_.clear();
  played_.reset();
  own_ = {};
  other_.reset();
  skills_.clear();
}

void ProgressTab::Leave() {
  ++computing_;
  SetUp();
}

void ProgressTab::SetVisible(bool visible) {
  for (Control* const control : Controls().All()) control->SetVisible(visible);
  if (!visible) ++computing_;
}

void ProgressTab::MakeRoom() {
  ProgressControls& controls = Controls();
  controls.lstFigures.SetSize(other_ ? ProgressControls::kWide : ProgressControls::kNarrow,
                              controls.lstFigures.Height());
  for (Control* const control : std::initializer_list<Control*>{
           &controls.pltProgress, &controls.cbxPicture, &controls.cmdSavePicture}) {
    control->SetVisible(!other_);
  }
}

void ProgressTab::Show() {
  if (!played_ && !Read()) return;
  Recompute();
}

std::string ProgressTab::TradesAsCsv() const {
  return TradesCsv(scopes_, LedgerEntryPlans(ledger_), own_.trades);
}

bool ProgressTab::Read() {
  const unsigned reading = ++computing_;
  std::vector<PlayedScope> scopes =
      PlayedScopes(ledger_, cache_, [&](std::size_t done, std::size_t all) {
        ShowFindings({"Reading the bars of " + std::to_string(done) + " of " + std::to_string(all) +
                      " sessions ..."});
        platform_.events.ProcessPending();
        return reading == computing_;
      });
  if (reading != computing_) return false;
  scopes_ = std::move(scopes);
  played_ = std::make_shared<const Played>(PlayedOf(scopes_, LedgerEntryPlans(ledger_)));
  ListChoices();
  return true;
}

void ProgressTab::ListChoices() {
  listing_ = true;
  ProgressControls& controls = Controls();
  std::set<std::int32_t> intervals;
  std::set<std::int8_t> hours;
  for (const PlayedSession& session : played_->sessions) intervals.insert(session.interval);
  for (const PlayedTrade& trade : played_->trades) {
    if (trade.hour != kAbsent) hours.insert(trade.hour);
  }
  intervals_.assign(intervals.begin(), intervals.end());
  hours_.assign(hours.begin(), hours.end());
  std::vector<std::string> interval_names;
  std::ranges::transform(intervals_, std::back_inserter(interval_names), IntervalLabel);
  std::vector<std::string> hour_names;
  hour_names.reserve(hours_.size());
  for (const std::int8_t hour : hours_) hour_names.push_back(std::to_string(hour) + ":00 to :59");
  std::vector<std::string> setups = played_->setups;
  setups.insert(setups.begin(), "No setup");
  controls.cbxOfSecurity.SetRows(RowsOf("All securities", played_->symbols));
  controls.cbxOfSetup.SetRows(RowsOf("All setups", setups));
  controls.cbxOfInterval.SetRows(RowsOf("All intervals", interval_names));
  controls.cbxOfHour.SetRows(RowsOf("Any hour", hour_names));
  std::vector<ComboBox::Row> pictures;
  pictures.reserve(kProgressPictures.size());
  for (const std::string_view name : kProgressPictures) pictures.push_back({std::string(name)});
  controls.cbxPicture.SetRows(std::move(pictures));
  for (ComboBox* const list : controls.Lists()) list->SetIndex(0);
  listing_ = false;
}

TradeFilter ProgressTab::Filter() const {
  const ProgressControls& controls = Controls();
  TradeFilter filter;
  filter.symbol = Chosen(controls.cbxOfSecurity);
  if (const auto setup = Chosen(controls.cbxOfSetup)) filter.setup = *setup - 1;
  if (const auto side = Chosen(controls.cbxOfSide)) filter.is_long = *side == 0;
  if (const auto confidence = Chosen(controls.cbxOfConfidence)) {
    filter.confidence = static_cast<std::uint8_t>(*confidence);
  }
  if (const auto blind = Chosen(controls.cbxOfBlind)) filter.blind = *blind == 0;
  if (const auto period = Chosen(controls.cbxOfPeriod)) {
    filter.played_from = DayBefore(platform_.clock.Today(),
                                   kPeriodDays.at(static_cast<std::size_t>(*period) + 1) - 1);
  }
  if (const auto interval = Chosen(controls.cbxOfInterval)) {
    filter.interval = intervals_.at(static_cast<std::size_t>(*interval));
  }
  if (const auto day = Chosen(controls.cbxOfDay)) filter.weekday = static_cast<std::int8_t>(*day);
  if (const auto hour = Chosen(controls.cbxOfHour)) {
    filter.hour = hours_.at(static_cast<std::size_t>(*hour));
  }
  filter.look_ahead = controls.chkLookAhead.Checked();
  return filter;
}

std::optional<Selection> ProgressTab::Compared(const TradeFilter& filter) const {
  const ProgressControls& controls = Controls();
  switch (controls.cbxCompare.Index()) {
    case kAllOthers: {
      TradeFilter all;
      all.look_ahead = filter.look_ahead;
      const Selection every = Select(*played_, all);
      Selection others;
      std::ranges::set_difference(every, own_.trades, std::back_inserter(others));
      return others;
    }
    case kTimeBefore: {
      const int days =
          kPeriodDays.at(static_cast<std::size_t>(std::max(controls.cbxOfPeriod.Index(), 0)));
      if (days == 0) return Selection();
      const std::int32_t today = platform_.clock.Today();
      TradeFilter before = filter;
      before.played_from = DayBefore(today, 2 * days - 1);
      before.played_to = DayBefore(today, days);
      return Select(*played_, before);
    }
    default:
      return std::nullopt;
  }
}

void ProgressTab::Recompute() {
  if (listing_ || !played_) return;
  const unsigned computing = ++computing_;
  const TradeFilter filter = Filter();
  const auto group_of = [this](Selection trades) {
    Group group;
    group.trades = std::move(trades);
    group.curve = ChainEquity(*played_, group.trades);
    RoundOptions values_only;
    values_only.count = 0;
    group.figures = ComputeFigures(*played_, group.trades, group.curve, values_only);
    return group;
  };
  own_ = group_of(Select(*played_, filter));
  std::optional<Selection> compared = Compared(filter);
  other_ = compared ? std::optional(group_of(std::move(*compared))) : std::nullopt;
  skills_.clear();
  MakeRoom();
  ShowFigures();
  ShowPicture();
  ShowFindings({"Computing ..."});
  try {
    ComputeRounds(computing);
  } catch (const Superseded&) {
    // The newer computation shows its own.
  }
}

void ProgressTab::ComputeRounds(unsigned computing) {
  // The trades may be read again while events run.
  const std::shared_ptr<const Played> played = played_;
  const Group own = own_;
  RoundOptions options;
  options.progress = [&](double) {
    platform_.events.ProcessPending();
    if (computing != computing_) throw Superseded();
  };
  own_.figures = ComputeFigures(*played, own.trades, own.curve, options);
  if (other_) {
    const Group other = *other_;
    other_->figures = ComputeFigures(*played, other.trades, other.curve, options);
  }
  ShowFigures();
  std::vector<TradeGroup> groups = GroupsBySetup(*played, own.trades);
  groups.insert(groups.begin(), {"All", own.trades});
  skills_ = CompareWithRandomTraders(*played, groups, options);
  ShowPicture();
  std::vector<std::string> lines =
      FindingsOf(skills_, ComputeRiskAhead(*played, own.trades, options));
  const std::string drawn = own.figures.over_sessions ? "sessions" : "trades";
  lines.push_back("Intervals hold the true figure in 95 of 100 cases if later " + drawn +
                  " are like these; they draw from the " + drawn +
                  ". Excursions are bounds: what came first within a bar is not known.");
  ShowFindings(std::move(lines));
}

void ProgressTab::ShowFigures() {
  Table& table = Controls().lstFigures;
  const auto own = std::make_shared<const std::vector<ProgressFigure>>(own_.figures.figures);
  const auto other =
      other_ ? std::make_shared<const std::vector<ProgressFigure>>(other_->figures.figures)
             : nullptr;
  std::vector<Table::Column> columns{{"Figure"}, {"Value", true}, {"95 % interval", true}};
  if (other) {
    columns.push_back({"Compared", true});
    columns.push_back({"95 % interval", true});
  } else {
    columns.push_back({"n", true});
  }
  table.SetColumns(std::move(columns));
  table.SetContent({own->size(),
                    [own, other](std::size_t row, std::size_t column) -> std::string {
                      const ProgressFigure& figure = own->at(row);
                      if (column == 0) return std::string(figure.name);
                      if (column == 1) return figure.ValueText();
                      if (column == 2) return figure.IntervalText();
                      if (!other) return GroupedNumber(std::to_string(figure.n));
                      return column == 3 ? other->at(row).ValueText()
                                         : other->at(row).IntervalText();
                    },
                    [own](std::size_t row) { return std::string(own->at(row).formula); }});
}

void ProgressTab::ShowPicture() {
  if (listing_ || !played_) return;
  const auto kind = static_cast<ProgressPicture>(std::max(Controls().cbxPicture.Index(), 0));
  Controls().pltProgress.SetPicture(std::make_shared<const NumberPicture>(PictureOf(
      kind, *played_, own_.trades, own_.curve, skills_.empty() ? nullptr : &skills_.front())));
}

void ProgressTab::ShowFindings(std::vector<std::string> lines) {
  Controls().lstFindings.SetLines(std::move(lines));
}

void ProgressTab::SavePicture() {
  const Plot& plot = Controls().pltProgress;
  std::vector<FileForm> forms;
  for (const std::string& ending : plot.endings) {
    if (ending != "bmp") forms.push_back({UpperCased(ending) + " (*." + ending + ")", ending});
  }
  const auto file = platform_.files.ChooseFile(forms, "Progress");
  if (file && !file->empty()) plot.SaveTo(*file);
}

}  // namespace velumar
