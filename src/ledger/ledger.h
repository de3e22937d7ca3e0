#pragma once

#include <string_view>

namespace velumar {

// The record of the orders that were filled since the feed last started.
class Ledger {
 public:
  virtual ~Ledger() = default;
  virtual void LedgerDeleteAll(std::string_view table) = 0;
};

}  // namespace velumar
