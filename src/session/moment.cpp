#include "session/moment.h"

#include <algorithm>
#include <array>
#include <bit>
#include <stdexcept>
#include <utility>

#include "base/checksum.h"
#include "base/dates.h"
#include "base/number_text.h"

namespace velumar {

namespace {

constexpr std::array kBookFields{
    &Book::MarketPrice,      &Book::InitMargin,       &Book::ProfitPerContract,
    &Book::UsedMargin,       &Book::Commission,       &Book::VatAmount,
    &Book::Balance,          &Book::Portfolio,        &Book::BalancePoint,
    &Book::LAccum,           &Book::SAccum,           &Book::LAmount,
    &Book::SAmount,          &Book::LAvgPrice,        &Book::SAvgPrice,
    &Book::LUnrealisedMoney, &Book::SUnrealisedMoney, &Book::LUnrealised,
    &Book::SUnrealised,      &Book::LRealised,        &Book::SRealised,
    &Book::LRealisedMoney,   &Book::SRealisedMoney};
static_assert(sizeof(Book) == kBookFields.size() * sizeof(float));

std::string CheckAt(const SimSession& session, int bar) {
  const auto i = static_cast<std::size_t>(bar);
  return bar < 0 || i >= session.BarChecks.size() ? "" : ChecksumText(session.BarChecks[i]);
}

std::string MomentText(const LedgerMoment& moment) {
  return IsoDate(moment.date) + " " + PatternText(moment.time, kTimePattern);
}

}  // namespace

std::string ChecksumText(std::uint64_t check) {
  constexpr int kBits = 4;
  std::string text;
  for (int shift = 0; shift < 64; shift += kBits) {
    text += static_cast<char>('a' + ((check >> shift) & 0xF));
  }
  return text;
}

std::string BookText(const Book& book) {
  std::string text;
  for (const auto field : kBookFields) text += (text.empty() ? "" : " ") + ExactText(book.*field);
  return text;
}

Book BookFromText(std::string_view text) {
  Book book;
  std::string_view rest = text;
  for (const auto field : kBookFields) {
    const std::size_t end = std::min(rest.find(' '), rest.size());
    const auto value = ExactNumber<float>(rest.substr(0, end));
    if (!value) {
      throw std::runtime_error("the book of the session is damaged: " + std::string(text));
    }
    book.*field = *value;
    rest.remove_prefix(std::min(end + 1, rest.size()));
  }
  return book;
}

std::vector<std::uint64_t> BarChecks(const SeriesView& bars) {
  std::vector<std::uint64_t> checks(bars.dates.size());
  std::uint64_t check = kChecksumOfNothing;
  const auto add = [&check](auto value) {
    const auto bytes = std::bit_cast<std::array<char, sizeof value>>(value);
    check = Checksum({bytes.data(), bytes.size()}, check);
  };
  for (std::size_t i = 0; i < checks.size(); ++i) {
    add(bars.dates[i]);
    add(bars.times[i]);
    for (const auto* values : {&bars.opens, &bars.highs, &bars.lows, &bars.closes, &bars.volumes,
                               &bars.open_interests}) {
      add((*values)[i]);
    }
    checks[i] = check;
  }
  return checks;
}

LedgerMoment MomentOf(const SimSession& session, std::string touched) {
  // An order is written while its quantity is in the book, which has none between orders.
  Book book = session;
  book.LAmount = 0;
  book.SAmount = 0;
  LedgerMoment moment{.session = session.SessionNumber,
                      .bar = session.BarIndex,
                      .newest_shown = session.NewestShownBar,
                      .first_shown = session.FirstShownBar,
                      .bars_check = CheckAt(session, session.BarIndex),
                      .book = BookText(book),
                      .touched = std::move(touched)};
  if (session.HasBar(session.BarIndex)) {
    moment.date = session.BarDate[static_cast<std::size_t>(session.BarIndex)];
    moment.time = session.BarTime[static_cast<std::size_t>(session.BarIndex)];
  }
  return moment;
}

LedgerMoment MomentOfBar(const SeriesView& bars, int bar) {
  const auto i = static_cast<std::size_t>(bar);
  LedgerMoment moment;
  moment.bar = bar;
  moment.date = bars.dates.at(i);
  moment.time = bars.times.at(i);
  moment.bars_check = ChecksumText(BarChecks(bars).at(i));
  return moment;
}

LedgerMoment MomentOfRow(std::string iso_date, std::string time) {
  std::erase(iso_date, '-');
  std::erase(time, ':');
  LedgerMoment moment;
  moment.date = DateFromDigits(iso_date).value_or(0);
  moment.time = ExactNumber<std::int32_t>(time).value_or(0);
  return moment;
}

int BarOfMoment(const LedgerMoment& moment, const SeriesView& bars) {
  const auto until = std::pair(moment.date, moment.time);
  int bar = static_cast<int>(bars.dates.size()) - 1;
  while (bar >= 0 && std::pair(bars.dates[static_cast<std::size_t>(bar)],
                               bars.times[static_cast<std::size_t>(bar)]) > until) {
    --bar;
  }
  return bar;
}

std::string SeriesChange(const LedgerMoment& moment, const SeriesView& bars) {
  if (moment.bar < 0) return {};
  const int now = BarOfMoment(moment, bars);
  const std::string until = " bars up to " + MomentText(moment);
  if (now != moment.bar) {
    return "It has " + std::to_string(now + 1) + until + " now; it had " +
           std::to_string(moment.bar + 1) + ".";
  }
  const auto check = BarChecks(bars).at(static_cast<std::size_t>(now));
  if (ChecksumText(check) == moment.bars_check) return {};
  return "Prices, volumes or times of its " + std::to_string(now + 1) + until +
         " are different now.";
}

}  // namespace velumar
