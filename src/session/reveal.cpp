#include "session/reveal.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <utility>

#include "base/decimal.h"
#include "base/ignoring.h"
#include "ledger/reveal.h"
#include "session/run_source.h"

namespace velumar {

namespace {

[[noreturn]] void Refuse(int number, const std::string& why) {
  throw std::runtime_error("The session " + std::to_string(number) + " " + why);
}

// True if the series still has the bars that the session has shown.
bool IsAsPlayed(const BarArrays& real, const LedgerMoment& moment, const BlindMask& mask) {
  const auto bar = static_cast<std::size_t>(std::max(moment.bar, 0));
  return std::cmp_less(moment.newest_shown, real.dates.size()) && bar < real.dates.size() &&
         (moment.bar < 0 || mask.Date(real.dates[bar]) == moment.date);
}

double RealClose(const RevealedSession& session, int bar, double shown) {
  constexpr double kTolerance = 0.006;  // a wiped holding's price has two decimals
  const BlindMask& mask = session.key.mask;
  if (bar >= 0 && std::cmp_less(bar, session.closes.size())) {
    const float real = session.closes[static_cast<std::size_t>(bar)];
    if (std::abs(mask.Price(real) - shown) < kTolerance) {
      return ReadableDouble(real);
    }
  }
  return shown / mask.factor;
}

}  // namespace

RevealedSession RevealSession(LedgerConnection& ledger, int number, IndexCache& cache) {
  const LedgerPlayed played = LedgerReadSession(ledger, number);
  const auto key = Decoded(played.session.mask);
  if (!key) Refuse(number, "was not played blind.");
  if (played.session.symbol != kBlindSymbol) Refuse(number, "has been revealed already.");
  const LedgerMoment& moment = played.moment;
  RevealedSession revealed{.number = number,
                           .key = *key,
                           .interval = played.session.interval,
                           .first_day = key->start_day,
                           .last_day = moment.date == 0 ? 0 : key->mask.RealDate(moment.date),
                           .first = moment.first_shown,
                           .last = std::max(moment.newest_shown, moment.bar),
                           .current = moment.bar,
                           .closes = {}};
  IgnoringErrors([&] {
    const BarArrays real =
        ReadReplayable({played.session.directory, key->symbol, played.session.interval, 0}, cache);
    if (!IsAsPlayed(real, moment, key->mask)) return;
    revealed.closes = real.closes;
    revealed.first_day = real.dates.at(static_cast<std::size_t>(revealed.first));
    revealed.last_day = real.dates.at(static_cast<std::size_t>(revealed.last));
  });
  LedgerReveal(ledger, number,
               {.symbol = key->symbol,
                .start_day = key->start_day,
                .factor = key->mask.factor,
                .day = [&](std::int32_t shown) { return key->mask.RealDate(shown); },
                .close = [&](int bar, double shown) { return RealClose(revealed, bar, shown); }});
  return revealed;
}

}  // namespace velumar
