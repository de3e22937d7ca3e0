#pragma once

#include <string>
#include <string_view>

#include "forms/desktop.h"

namespace velumar {

// What an order reads from the boxes, or the sentence that says which box can't be used and why.
struct OrderTexts {
  double quantity = 0;        // as the cost formulas take it
  float quantity_single = 0;  // as the book holds it
  double commission = 0;      // percent under stock rules, else money of one contract
  double vat = 0;             // percent, whole
  std::string problem;        // empty when all can be used
};

// Reads the quantity of the panel, and commission, VAT and margin of the setup window. Negative
// numbers, texts without a number and numbers out of range are problems.
OrderTexts ReadOrderTexts(Desktop& desktop, std::string_view quantity, bool stock);

}  // namespace velumar
