#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "session/run_inputs.h"
#include "session/sim_session.h"

namespace velumar {

// The figures of the account, as the trader enters them.
enum class AccountFigure : std::uint8_t {
  kCommission,  // a percentage under stock rules, else whole money of one contract
  kStartingMoney,
  kVat,
  kMargin,
  kProfitPerContract,
};

// Why an entered figure can't be used, as a sentence that names it: not a number, commas that don't
// group thousands, negative, or out of range. Nothing if it can be used. The mark on a box and the
// refusals of "Start" and of orders all use this sentence.
std::optional<std::string> FigureProblem(AccountFigure figure, std::string_view text, bool stock);

// Reads margin and profit of one contract. A text that can't be used leaves its field as it was.
void ReadContract(SimSession& session, const RunInputs& inputs);
// The same, and the starting money; then the account holds nothing.
void StartAccount(SimSession& session, const RunInputs& inputs);

// What an order takes from the entered figures.
struct OrderFigures {
  double quantity = 0;        // as the cost formulas take it
  float quantity_single = 0;  // as the book holds it
  double commission = 0;      // percent under stock rules, else money of one contract
  double vat = 0;             // percent, whole
  std::string problem;        // why they can't be used; empty if they can
};

// `quantity` is a text as the trader enters it.
OrderFigures ReadOrderFigures(const RunInputs& inputs, bool stock, const std::string& quantity);

}  // namespace velumar
