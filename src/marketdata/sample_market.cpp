#include "marketdata/sample_market.h"

#include <algorithm>
#include <chrono>
#include <cmath>

#include "marketdata/sample_random.h"

namespace velumar {

namespace {

using std::chrono::sys_days;
using std::chrono::year_month_day;

constexpr int kBaseMinutes = 5;
constexpr int kCoarseMinutes = 60;  // for days whose course nobody sees
constexpr int kMovesPerBar = 6;
constexpr int kYearOfDays = 250;
constexpr sys_days kFirstDay = std::chrono::year(2000) / 1 / 3;
constexpr sys_days kLastDay = std::chrono::year(2007) / 12 / 31;

bool IsHoliday(const year_month_day& day) {
  const auto month = static_cast<unsigned>(day.month());
  const auto of_month = static_cast<unsigned>(day.day());
  return (month == 1 && of_month == 1) || (month == 5 && of_month == 1) ||
         (month == 12 && (of_month == 25 || of_month == 26));
}

std::vector<std::int32_t> TradingDays() {
  std::vector<std::int32_t> days;
  for (sys_days day = kFirstDay; day <= kLastDay; day += std::chrono::days(1)) {
    const year_month_day date(day);
    const unsigned weekday = std::chrono::weekday(day).iso_encoding();
    if (weekday > 5 || IsHoliday(date)) continue;
    days.push_back(static_cast<int>(date.year()) * 10000 +
                   static_cast<int>(static_cast<unsigned>(date.month())) * 100 +
                   static_cast<int>(static_cast<unsigned>(date.day())));
  }
  return days;
}

std::int32_t ClockTime(int minutes) { return minutes / 60 * 10000 + minutes % 60 * 100; }

// Trading is lively at the open and the close and calm around noon; `place` runs from 0 to 1. The
// mean square over a day is near 1.
double Liveliness(double place) {
  const double from_noon = 2 * place - 1;
  return 0.75 + 0.65 * from_noon * from_noon;
}

Bar Merged(const std::vector<Bar>& bars, std::size_t from, std::size_t to) {
  Bar merged = bars[from];
  for (std::size_t i = from + 1; i < to; ++i) {
    merged.high = std::max(merged.high, bars[i].high);
    merged.low = std::min(merged.low, bars[i].low);
    merged.close = bars[i].close;
    merged.volume += bars[i].volume;
    merged.open_interest = bars[i].open_interest;
  }
  return merged;
}

// Walks a price through the days: trends that last for weeks, restless spells that fade slowly,
// gaps over night, and now and then a day of news.
class Walk {
 public:
  Walk(const SampleSecurity& security, std::uint64_t seed)
      : security_(security),
        random_(seed),
        price_(security.first_price),
        anchor_(security.first_price),
        restlessness_(1) {}

  // The day in bars of `minutes`.
  std::vector<Bar> Trade(std::int32_t date, int minutes) {
    TurnTrend();
    const double before = price_;
    const double move = security_.daily_move * std::sqrt(restlessness_);
    Jump(move);
    std::vector<Bar> bars = TradeSession(date, minutes, move);
    const double change = (price_ / before - 1) / security_.daily_move;
    Settle(change);
    SpreadVolume(bars, std::fabs(change));
    MoveOpenInterest(bars);
    return bars;
  }

 private:
  void TurnTrend() {
    anchor_ *= 1 + security_.yearly_growth / kYearOfDays;
    if (trend_days_-- > 0) return;
    trend_days_ = static_cast<int>(random_.Between(15, 110));
    trend_ = security_.daily_move * random_.Between(-0.13, 0.15);
  }

  void Jump(double move) {
    double gap = 0.35 * random_.Bell();
    const bool news = random_.Uniform() < 0.012;
    if (news) gap += (random_.Uniform() < 0.5 ? -1 : 1) * random_.Between(2.5, 5);
    ChangeBy(gap * move);
  }

  std::vector<Bar> TradeSession(std::int32_t date, int minutes, double move) {
    const int length = security_.session_end - security_.session_start;
    const int count = length / minutes;
    const double pull = 0.006 * (anchor_ / price_ - 1);
    const double mood = 0.45 * move * random_.Bell();
    const double drift = (trend_ + pull + mood) / (count * kMovesPerBar);
    const double step = 0.8 * move / std::sqrt(count * kMovesPerBar);
    std::vector<Bar> bars;
    for (int i = 0; i < count; ++i) {
      bars.push_back(TradeBar(drift, step * Liveliness((i + 0.5) / count)));
      bars.back().date = date;
      bars.back().time = ClockTime(security_.session_start + i * minutes);
    }
    return bars;
  }

  Bar TradeBar(double drift, double step) {
    Bar bar;
    bar.open = bar.high = bar.low = Quote();
    for (int i = 0; i < kMovesPerBar; ++i) {
      ChangeBy(drift + step * random_.Bell());
      bar.close = Quote();
      bar.high = std::max(bar.high, bar.close);
      bar.low = std::min(bar.low, bar.close);
    }
    return bar;
  }

  // A large change makes the next days restless too.
  void Settle(double change) {
    restlessness_ = 0.04 + 0.1 * change * change + 0.86 * restlessness_;
    restlessness_ = std::clamp(restlessness_, 0.25, 8.0);
  }

  void SpreadVolume(std::vector<Bar>& bars, double change) {
    interest_ += 0.06 * (1 - interest_) + 0.05 * random_.Bell();
    interest_ = std::clamp(interest_, 0.5, 2.0);
    const double day = security_.daily_volume * interest_ * random_.Between(0.6, 1.1) *
                       (0.75 + 0.3 * std::min(change, 5.0));
    const auto count = static_cast<double>(bars.size());
    for (std::size_t i = 0; i < bars.size(); ++i) {
      const double share = Liveliness((static_cast<double>(i) + 0.5) / count) / count;
      const double lots = std::floor(day * share * random_.Between(0.5, 1.6) / 10) * 10;
      bars[i].volume = static_cast<float>(lots);
    }
  }

  // Contracts are opened over a quarter of a year and closed in its last weeks.
  void MoveOpenInterest(std::vector<Bar>& bars) {
    if (security_.open_interest == 0) return;
    constexpr int kQuarter = 63;
    const double place = static_cast<double>(day_++ % kQuarter) / kQuarter;
    const double level = place < 0.8 ? 0.6 + place : 1.4 - (place - 0.8) * 4;
    const double contracts =
        std::floor(security_.open_interest * level * random_.Between(0.97, 1.03));
    for (Bar& bar : bars) bar.open_interest = static_cast<float>(contracts);
  }

  void ChangeBy(double part) {
    price_ = std::max(price_ * (1 + part), 1.0 / security_.ticks_per_unit);
  }

  float Quote() const {
    return static_cast<float>(std::round(price_ * security_.ticks_per_unit) /
                              security_.ticks_per_unit);
  }

  const SampleSecurity& security_;
  SampleRandom random_;
  double price_;
  double anchor_;        // where the price would stand without moods
  double restlessness_;  // of the moves, as the square of a part of the usual one
  double interest_ = 1;  // of the public, as a part of the usual volume
  double trend_ = 0;     // per day
  int trend_days_ = 0;
  int day_ = 0;
};

}  // namespace

SampleMarket::SampleMarket(const SampleSecurity& security, std::uint64_t seed) {
  Walk walk(security, seed);
  const std::vector<std::int32_t> days = TradingDays();
  for (std::size_t i = 0; i < days.size(); ++i) {
    const bool seen = !security.intraday.empty() && i + kYearOfDays >= days.size();
    std::vector<Bar> bars = walk.Trade(days[i], seen ? kBaseMinutes : kCoarseMinutes);
    daily_.push_back(Merged(bars, 0, bars.size()));
    daily_.back().time = 0;
    if (seen) sessions_.push_back(std::move(bars));
  }
}

std::vector<Bar> SampleMarket::Intraday(int minutes, int days) const {
  std::vector<Bar> merged;
  const auto width = static_cast<std::size_t>(minutes / kBaseMinutes);
  const auto first = sessions_.end() - std::min<std::ptrdiff_t>(days, std::ssize(sessions_));
  for (auto session = first; session != sessions_.end(); ++session) {
    for (std::size_t i = 0; i < session->size(); i += width) {
      merged.push_back(Merged(*session, i, std::min(i + width, session->size())));
    }
  }
  return merged;
}

}  // namespace velumar
