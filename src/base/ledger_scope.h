#pragma once

#include <compare>
#include <cstdint>

namespace velumar {

// Whose orders are read from the ledger: those of a run, or those of all runs of a session.
struct LedgerScope {
  enum class Kind : std::uint8_t { kRun, kSession };

  Kind kind = Kind::kRun;
  int number = 0;  // run 0: the current one

  static constexpr LedgerScope Run(int number) { return {Kind::kRun, number}; }
  static constexpr LedgerScope Session(int number) { return {Kind::kSession, number}; }

  auto operator<=>(const LedgerScope&) const = default;
};

inline constexpr LedgerScope kCurrentRun{};

}  // namespace velumar
