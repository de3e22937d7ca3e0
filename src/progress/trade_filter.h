#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "progress/played.h"

namespace velumar {

// Which trades count. What is not set lets all pass.
struct TradeFilter {
  std::optional<std::int32_t> symbol = {};    // place in Played::symbols
  std::optional<std::int32_t> interval = {};  // as in PlayedSession
  std::optional<std::int32_t> setup = {};  // place in Played::setups; kAbsent: trades without one
  std::optional<bool> is_long = {};
  std::optional<bool> blind = {};
  std::int32_t from_day = 0;  // of the entry, yyyymmdd, inclusive; 0: any
  std::int32_t to_day = 0;
  // When the session was last played, as dates "2026-11-27", inclusive, UTC; empty: any. A session
  // whose time was not recorded passes only if both are empty.
  std::string played_from = {};
  std::string played_to = {};
  std::optional<std::uint8_t> confidence = {};  // 0: trades without one
  std::optional<std::int8_t> weekday = {};      // 0 is Monday
  std::optional<std::int8_t> hour = {};
  std::vector<LedgerScope> sessions = {};  // empty: any
  bool look_ahead = false;                 // also trades that knew later bars
};

// Places in Played::trades, ascending.
using Selection = std::vector<std::int32_t>;

Selection Select(const Played& played, const TradeFilter& filter);

// The trades of one session within a selection.
struct SelectedSession {
  std::int32_t session = 0;  // place in Played::sessions
  std::span<const std::int32_t> trades;
};

// The sessions that have selected trades, in the order they were played. The selection must outlive
// the result.
std::vector<SelectedSession> BySession(const Played& played,
                                       std::span<const std::int32_t> selection);

}  // namespace velumar
