#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/ledger_scope.h"

namespace velumar {

// What a trader has played, over all sessions, as the figures need it: flat, so that a hundred
// thousand trades are read and filtered at once. Texts are kept once and named by their place.

inline constexpr std::int32_t kAbsent = -1;  // no such place, bar or hour

// A closed quantity with P/L: first in, first out within its side.
struct PlayedTrade {
  std::int32_t session = 0;      // place in Played::sessions
  std::int32_t setup = kAbsent;  // place in Played::setups
  // Of the session's series; kAbsent if not recorded. A trader who stepped back may close at a bar
  // before the entry.
  std::int32_t entry_bar = kAbsent;
  std::int32_t exit_bar = kAbsent;
  std::int32_t entry_day = 0;  // yyyymmdd; 0: not recorded
  std::int32_t exit_day = 0;
  std::int8_t weekday = 0;      // of the entry: 0 is Monday; kAbsent if not recorded
  std::int8_t hour = -1;        // of the entry, 0 to 23; kAbsent on daily bars
  std::uint8_t confidence = 0;  // 1 to 5; 0: none given
  bool is_long = true;
  bool look_ahead = false;  // later bars were known at the entry or the exit
  double quantity = 0;
  double entry_price = 0;
  double exit_price = 0;
  double money_per_point = 0;  // for one unit of quantity
  double money = 0;            // before costs
  double costs = 0;            // commission and VAT of the entry's share and of the exit's
  double risk = 0;             // money that the plan risked at the entry; 0: no plan with a stop
  // How far the price went against and for the trade within its bars, in points for one unit, 0 or
  // more. Bar extremes only bound the truth: the order of high and low within a bar is not known.
  std::optional<float> adverse;
  std::optional<float> favourable;

  double Net() const { return money - costs; }
  std::optional<double> R() const {  // before costs
    return risk > 0 ? std::optional(money / risk) : std::nullopt;
  }
};

// A session, or a run that belongs to none.
struct PlayedSession {
  LedgerScope scope;
  std::int32_t symbol = 0;    // place in Played::symbols
  std::int32_t interval = 0;  // minutes; kAbsent: daily bars
  bool blind = false;
  double starting_money = 0;
  std::int32_t first_day = 0;  // yyyymmdd, of the bars that were played
  std::int32_t last_day = 0;
  std::string
      played_at;  // when it was last played, "2026-11-27 07:03:40", UTC; empty: not recorded
  // The closes of the bars that were played, from the bar `first_bar` to the newest one that was
  // shown. Empty if the data was gone before they were recorded.
  std::int32_t first_bar = 0;
  std::vector<float> closes;

  // "2026-11-27"; empty if it was not recorded.
  std::string_view PlayedDay() const { return std::string_view(played_at).substr(0, 10); }
};

struct Played {
  std::vector<std::string> symbols;
  std::vector<std::string> setups;
  std::vector<PlayedSession> sessions;  // in the order in which they were played
  std::vector<PlayedTrade> trades;      // by session, as they were closed

  const PlayedSession& SessionAt(std::int32_t place) const {
    return sessions[static_cast<std::size_t>(place)];
  }
  const PlayedTrade& TradeAt(std::int32_t place) const {
    return trades[static_cast<std::size_t>(place)];
  }
  const std::string& SetupAt(std::int32_t place) const {
    return setups[static_cast<std::size_t>(place)];
  }
};

}  // namespace velumar
