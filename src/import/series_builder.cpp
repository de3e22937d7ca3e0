#include "import/series_builder.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <utility>

#include "base/dates.h"
#include "base/number_text.h"
#include "import/wording.h"
#include "marketdata/interval.h"

namespace velumar {

namespace {

// Of a series longer than the sample, so many rows are sorted again: a repeated hour of bars of a
// second.
constexpr std::size_t kWindow = 4096;

std::string IntervalsText(const std::vector<int>& intervals) {
  std::string text;
  for (std::size_t i = 0; i < intervals.size(); ++i) {
    text += (i == 0 ? "" : i + 1 < intervals.size() ? ", " : " or ") + IntervalText(intervals[i]);
  }
  return text;
}

// A bar that is labelled by its end, labelled by its start.
Bar LabelledByStart(Bar bar, int seconds) {
  int second = MinuteOfDay(bar.time) * 60 + bar.time % 100 - seconds;
  if (second < 0) {
    second += 86400;
    bar.date = DaysLater(bar.date, -1);
  }
  bar.time = second / 3600 * 10000 + second / 60 % 60 * 100 + second % 60;
  return bar;
}

BarKey KeyOf(const Bar& bar) { return TimestampKey(bar.date, bar.time); }

}  // namespace

bool PricesContradict(const Bar& bar) {
  return bar.low > std::min({bar.open, bar.high, bar.close}) ||
         bar.high < std::max(bar.open, bar.close);
}

void SeriesBuilder::Tally::Add(std::int64_t at) {
  line = count == 0 ? at : std::min(line, at);
  ++count;
}

std::string SeriesBuilder::Tally::Text(const std::string& what,
                                       const std::string& what_many) const {
  return Counted(count, "bar") + " " + (count == 1 ? what : what_many) + " (first on line " +
         std::to_string(line) + ")";
}

void SeriesBuilder::Add(const Bar& bar, std::int64_t line, std::optional<int> utc_offset) {
  if (!refusal_.empty()) return;
  buffer_.push_back({.bar = bar, .utc_offset = utc_offset, .line = line});
  if (buffer_.size() >= limit_) Flush(kWindow);
}

// Takes all buffered rows but the last `keep`, in order.
void SeriesBuilder::Flush(std::size_t keep) {
  if (!begun_) Begin(keep == 0);
  ConvertFrom(converted_);
  Sort();
  const std::size_t taken = buffer_.size() - std::min(keep, buffer_.size());
  for (std::size_t i = 0; i < taken && refusal_.empty(); ++i) Take(buffer_[i]);
  buffer_.erase(buffer_.begin(), buffer_.begin() + static_cast<std::ptrdiff_t>(taken));
  converted_ = buffer_.size();
  limit_ = 2 * kWindow;
}

// Learns from the first rows what the others need.
void SeriesBuilder::Begin(bool whole_file) {
  begun_ = true;
  std::int64_t later = 0;
  for (std::size_t i = 1; i < buffer_.size(); ++i) {
    later += KeyOf(buffer_[i].bar) < KeyOf(buffer_[i - 1].bar) ? -1 : 1;
  }
  newest_first_ = later < 0;
  backwards_ = newest_first_ && !whole_file;
  if (newest_first_ && whole_file) std::ranges::reverse(buffer_);
  if (ZoneTimes::Wanted(options_)) {
    // Refuses unknown zones, also where none is needed.
    auto zones = std::make_unique<ZoneTimes>(options_, backwards_);
    // The day of a daily bar is that of its market, whatever the zone.
    if (BufferSpacing().Interval() != kDaily) zones_ = std::move(zones);
    ConvertFrom(0);
  }
  converted_ = buffer_.size();
  Sort();
  DecideInterval(BufferSpacing());
}

void SeriesBuilder::Sort() {
  const auto before = [this](const Row& a, const Row& b) { return Before(a, b); };
  if (!std::ranges::is_sorted(buffer_, before)) std::ranges::sort(buffer_, before);
}

void SeriesBuilder::ConvertFrom(std::size_t place) {
  if (!zones_) return;
  for (std::size_t i = place; i < buffer_.size(); ++i) {
    Row& row = buffer_[i];
    try {
      if (!zones_->Convert(row.bar, row.utc_offset)) skipped_times_.Add(row.line);
    } catch (const ImportError& error) {
      throw ImportError("line " + std::to_string(row.line) + ": " + error.what());
    }
  }
}

// Of equal moments, the first one in time comes first, which is the last one of a file that begins
// with the newest bar.
bool SeriesBuilder::Before(const Row& a, const Row& b) const {
  const BarKey key_a = KeyOf(a.bar);
  const BarKey key_b = KeyOf(b.bar);
  if (key_a != key_b) return backwards_ ? key_a > key_b : key_a < key_b;
  return newest_first_ ? a.line > b.line : a.line < b.line;
}

BarSpacing SeriesBuilder::BufferSpacing() const {
  BarSpacing spacing;
  BarKey last = -1;
  for (const Row& row : buffer_) {
    if (std::exchange(last, KeyOf(row.bar)) != KeyOf(row.bar)) spacing.Add(row.bar);
  }
  return spacing;
}

void SeriesBuilder::DecideInterval(const BarSpacing& spacing) {
  using Fit = BarSpacing::Fit;
  const auto fits = [&](int interval) { return spacing.FitOf(interval, false) == Fit::kSame; };
  const std::optional<int> shown = spacing.Interval();
  hint_holds_ = !hint_ || hint_->certain || shown == hint_->interval;
  const bool no_help = hint_ && !IsReplayInterval(hint_->interval) && shown == hint_->interval;
  if (!hint_holds_ || no_help) hint_.reset();
  if (options_.interval) {
    const Fit fit = spacing.FitOf(*options_.interval, true);
    if (fit == Fit::kSame || fit == Fit::kFiner) interval_ = *options_.interval;
    if (fit == Fit::kFiner) aggregator_ = std::make_unique<BarAggregator>(interval_, backwards_);
  } else if (const std::optional<int> wanted = hint_ ? hint_->interval : shown) {
    if (IsReplayInterval(*wanted) && fits(*wanted)) interval_ = *wanted;
  }
  if (options_.label != BarLabel::kEnd) return;
  const bool as_stored = !aggregator_ && interval_ > 0;
  label_seconds_ = as_stored ? interval_ * 60 : spacing.Seconds();
}

void SeriesBuilder::Take(const Row& row) {
  if (before_ && KeyOf(before_->bar) == KeyOf(row.bar)) {
    TakeRepeated(row);
    return;
  }
  if (before_ && !Before(*before_, row)) {
    refusal_ = "line " + std::to_string(row.line) + " is " + (backwards_ ? "newer" : "older") +
               " than line " + std::to_string(before_->line) +
               "; sort the file, since it has more than " + GroupedNumber(std::to_string(sample_)) +
               " rows";
    return;
  }
  if (before_) CompareWithLast(row);
  before_ = row;
  TakeBar(label_seconds_ == 0 ? row.bar : LabelledByStart(row.bar, label_seconds_), row.line);
}

void SeriesBuilder::CompareWithLast(const Row& row) {
  constexpr float kJump = 1.02F;
  const Bar& earlier = backwards_ ? row.bar : before_->bar;
  const Bar& later = backwards_ ? before_->bar : row.bar;
  gaps_ += std::abs(double{later.open} - double{earlier.close});
  exchanged_gaps_ += std::abs(double{later.close} - double{earlier.open});
  if (earlier.date != later.date) return;
  ++steps_;
  if (later.open > earlier.close * kJump || earlier.close > later.open * kJump) ++jumps_;
}

void SeriesBuilder::TakeRepeated(const Row& row) {
  if (before_->bar == row.bar) {
    identical_.Add(std::max(row.line, before_->line));
    return;
  }
  repeated_.Add(row.line);
  if (std::exchange(last_repeated_, row.bar.date) != row.bar.date) ++repeated_days_;
}

void SeriesBuilder::TakeBar(Bar bar, std::int64_t line) {
  if (bar.date < options_.from.value_or(bar.date) || bar.date > options_.to.value_or(bar.date)) {
    ++outside_;
    return;
  }
  if (PricesContradict(bar)) contradictions_.Add(line);
  spacing_.Add(bar);
  if (bars_ == 0 || !backwards_) last_ = bar;
  if (bars_ == 0 || backwards_) first_ = bar;
  ++bars_;
  counts_.Add(bar);
  if (interval_ == 0) return;
  if (aggregator_) {
    if (const std::optional<Bar> finished = aggregator_->Add(bar)) Keep(*finished);
    return;
  }
  if (interval_ == kDaily) times_ += std::exchange(bar.time, 0) != 0 ? 1 : 0;
  Keep(bar);
}

void SeriesBuilder::Keep(const Bar& bar) {
  const int year = bar.date / 10000;
  ++years_[year];
  kept_[options_.too_long == TooLong::kSplitByYear ? year : 0].Add(bar, backwards_);
}

BuiltSeries SeriesBuilder::Finish() {
  if (refusal_.empty()) Flush(0);
  constexpr std::int64_t kEnoughBars = 10;
  BuiltSeries built{.hint_holds = hint_holds_,
                    .jumps_within_days = jumps_ * 2 > steps_,
                    .opens_at_end = bars_ >= kEnoughBars && exchanged_gaps_ * 2 < gaps_};
  if (refusal_.empty()) CheckSpacing();
  built.refusal = refusal_;
  built.bars = bars_;
  built.first = first_;
  built.last = last_;
  if (!refusal_.empty()) return built;
  bool incomplete = false;
  if (aggregator_) {
    if (const std::optional<Bar> finished = aggregator_->Finish()) Keep(*finished);
    incomplete = !aggregator_->NewestIsComplete(spacing_.Seconds());
  }
  AddRemarks(built);
  if (interval_ == 0) {
    AskInterval(built);
    return built;
  }
  built.interval = interval_;
  built.bars = 0;
  for (auto& [year, bars] : kept_) {
    const bool newest = &bars == &kept_.rbegin()->second;
    built.bars += bars.Count() - (newest && incomplete ? 1 : 0);
    std::vector<Bar> taken = bars.Take(backwards_, newest && incomplete);
    if (!taken.empty()) built.parts[year] = std::move(taken);
  }
  if (incomplete) {
    built.remarks.push_back("the last bar, of " + DayText(last_.date) +
                            ", is not complete and was left out");
  }
  if (built.parts.empty()) {
    built.refusal = "the bars do not fill one bar of the interval " + IntervalText(interval_);
    return built;
  }
  const Bar& oldest = built.parts.begin()->second.front();
  built.begins_within_bar = aggregator_ && oldest.date == first_.date && oldest.time < first_.time;
  if (built.begins_within_bar && !aggregator_->OldestIsComplete(spacing_.Seconds())) {
    built.remarks.push_back("the first bar, of " + DayText(oldest.date) +
                            ", may not be complete: the file begins within it");
  }
  built.first = oldest;
  built.last = built.parts.rbegin()->second.back();
  CheckLength(built);
  return built;
}

void SeriesBuilder::CheckSpacing() {
  using Fit = BarSpacing::Fit;
  if (bars_ == 0) {
    refusal_ = outside_ > 0 ? "no bar is within the days of --from and --to" : "has no bars";
  } else if (repeated_.count >= bars_ || (repeated_days_ >= 3 && repeated_.count * 20 > bars_)) {
    refusal_ = repeated_.Text("has the moment of another one", "have the moment of another one") +
               ": does the file hold several securities? Give it a column Ticker, or split it";
  } else if (bars_ >= 4 && contradictions_.count * 2 > bars_) {
    refusal_ = contradictions_.Text("has contradictory prices", "have contradictory prices") +
               ": are the columns named correctly?";
  }
  if (!refusal_.empty()) return;
  const std::vector<int> candidates = spacing_.Candidates();
  const std::string bars_are = "the bars are " + spacing_.Text();
  const std::string only = "; only " + ReplayIntervalsText() + " can be replayed";
  const bool only_daily = candidates == std::vector{kDaily};
  if (interval_ == 0 && options_.interval) {
    refusal_ = bars_are + " and can't be stored as " + IntervalText(*options_.interval);
    if (!candidates.empty()) refusal_ += "; --interval " + IntervalsText(candidates) + " can";
  } else if (interval_ == 0 && candidates.empty()) {
    refusal_ = bars_are + only;
  } else if (interval_ == 0 && only_daily && spacing_.Interval() != kDaily && !hint_) {
    refusal_ = bars_are + only + "; --interval D makes daily bars of them";
  } else if (interval_ != 0 && !aggregator_) {
    const Fit fit = spacing_.FitOf(interval_, options_.interval.has_value());
    if (fit != Fit::kFiner && fit != Fit::kUneven) return;
    refusal_ = "the later bars are closer than the first " +
               GroupedNumber(std::to_string(sample_)) + "; split the file";
  }
}

void SeriesBuilder::AskInterval(BuiltSeries& built) {
  const std::vector<int> candidates = spacing_.Candidates();
  const bool shows = spacing_.Interval().has_value();
  ImportQuestion question{
      .text = shows ? "The bars are " + spacing_.Text() : "The bars do not show their interval",
      .option = "--interval " + IntervalsText(candidates)};
  if (hint_) question.text += ", but " + hint_->source;
  question.text += ".";
  for (const int interval : candidates) {
    question
        .Add(interval == kDaily ? "daily bars" : IntervalName(interval),
             Counted(counts_.Of(interval), "bar"), options_)
        .interval = interval;
  }
  built.questions.push_back(std::move(question));
}

void SeriesBuilder::CheckLength(BuiltSeries& built) {
  const auto too_long = [](const auto& part) { return part.second > kLongestSeries; };
  const bool split = options_.too_long == TooLong::kSplitByYear;
  const bool year_too_long = std::ranges::any_of(years_, too_long);
  const bool is_too_long = split ? year_too_long : built.bars > kLongestSeries;
  if (!is_too_long) return;
  if (options_.too_long == TooLong::kKeepLast) {
    built.remarks.push_back("the last " + Counted(kLongestSeries, "bar") + " of " +
                            GroupedNumber(std::to_string(built.bars)) + " are kept");
    built.bars = kLongestSeries;
    return;
  }
  ImportQuestion question{.text = "The series has " + Counted(built.bars, "bar") +
                                  (split ? ", and one year more than " : "; a run can play ") +
                                  GroupedNumber(std::to_string(kLongestSeries)) + ".",
                          .option = "--last, --from"};
  const auto add = [&](const std::string& text, const std::string& result) -> ImportOptions& {
    return question.Add(text, result, options_);
  };
  if (!split) {
    add("keep the last " + Counted(kLongestSeries, "bar"), "from " + DayText(built.first.date))
        .too_long = TooLong::kKeepLast;
  }
  if (!split && !year_too_long) {
    add("one series for each year",
        std::to_string(years_.begin()->first) + " to " + std::to_string(years_.rbegin()->first))
        .too_long = TooLong::kSplitByYear;
    question.option += ", --split-by-year";
  }
  for (const int interval : spacing_.Candidates()) {
    if (interval <= interval_ && interval != kDaily) continue;
    if (counts_.Of(interval) > kLongestSeries) continue;
    add(interval == kDaily ? "daily bars" : "bars of " + IntervalName(interval),
        Counted(counts_.Of(interval), "bar"))
        .interval = interval;
  }
  question.option += " or --interval";
  built.questions.push_back(std::move(question));
}

void SeriesBuilder::AddRemarks(BuiltSeries& built) const {
  const auto add = [&](const Tally& tally, const std::string& what, const std::string& many) {
    if (tally.count > 0) built.remarks.push_back(tally.Text(what, many));
  };
  const std::string unchanged = " contradictory prices, imported unchanged";
  add(contradictions_, "has" + unchanged, "have" + unchanged);
  add(identical_, "is a repeated line and was left out", "are repeated lines and were left out");
  const std::string repeated =
      " the moment of an earlier one, as in the repeated hour at the end "
      "of summer time, and ";
  add(repeated_, "has" + repeated + "was left out", "have" + repeated + "were left out");
  if (times_ > 0) {
    built.remarks.push_back(Counted(times_, "bar") + (times_ == 1 ? " has" : " have") +
                            " a time, ignored because the series is daily");
  }
  const std::string skipped =
      " a time that " + options_.from_zone.value_or("") + " skips when summer time begins, and ";
  const std::string unmoved = " read as if the clock had not moved";
  add(skipped_times_, "has" + skipped + "was" + unmoved, "have" + skipped + "were" + unmoved);
  if (ZoneTimes::Wanted(options_) && !zones_) {
    built.remarks.push_back("the days of daily bars are kept as written, whatever the zone");
  }
}

}  // namespace velumar
