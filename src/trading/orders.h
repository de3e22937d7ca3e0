#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "ledger/ledger.h"
#include "platform/platform.h"
#include "session/chart_side.h"
#include "session/run_inputs.h"
#include "session/run_view.h"
#include "session/sim_session.h"
#include "trading/account.h"
#include "trading/position_book.h"

namespace velumar {

enum class OrderResult : std::uint8_t {
  kDone,         // also an order of quantity 0, which is reported in red
  kRefused,      // not enough money, a result out of range, or a row that can't be written
  kNothingHeld,  // an offset of a side that holds nothing
  kTooMuch,      // an offset of more than is held: the position is dropped
  kInvalid,      // no bar of this run yet, or an entered figure that can't be used
};

// The four orders. An order fills at once and in full at the close of the current bar, or not at
// all. When it returns kDone, its row is safe in the ledger. An offset is subtracted as decimals:
// as floats, closing exactly 0.7 could leave a remainder or drop the position.
class OrderDesk {
 public:
  OrderDesk(SimSession& session, RunInputs& inputs, RunView& view, Platform& platform,
            LedgerConnection& ledger, ChartSide& chart)
      : session_(session),
        inputs_(inputs),
        view_(view),
        platform_(platform),
        ledger_(ledger),
        chart_(chart) {}

  OrderResult Long() { return last_result_ = Enter(kLongSide, "Long"); }
  OrderResult Short() { return last_result_ = Enter(kShortSide, "Short"); }
  OrderResult OffsetLong() {
    return last_result_ = Offset(kLongSide, kOffsetLong, inputs_.Quantity());
  }
  OrderResult OffsetShort() {
    return last_result_ = Offset(kShortSide, kOffsetShort, inputs_.Quantity());
  }
  // Offsets all that is held on both sides, whatever quantity is entered.
  void OffsetAll();

  // Of the last order.
  OrderResult LastResult() const { return last_result_; }

 private:
  static constexpr std::string_view kOffsetLong = "Offset Long";
  static constexpr std::string_view kOffsetShort = "Offset Short";

  OrderResult Enter(const Side& side, std::string_view position);
  OrderResult Offset(const Side& side, std::string_view position, const std::string& quantity);

  bool OnBar();
  OrderResult Fill(const Side& side, std::string_view position, const OrderFigures& figures);
  OrderResult Close(const Side& side, std::string_view position, const OrderFigures& figures);
  // Returns the order's value and sets Commission and VatAmount in the book.
  double Costs(const OrderFigures& figures);
  void Average(const Side& side);
  OrderResult DropPosition(const Side& side, std::string_view position, const Book& before,
                           const OrderFigures& figures);
  // Runs `work`. If it fails, the book is as it was.
  OrderResult AllOrNothing(const std::function<OrderResult()>& work);
  // Shows the order on the chart, and keeps a picture of it if the order has a row.
  void Mark(const Side& side, bool entry, const LedgerOrderKey& key);
  // The waiting plan as the order takes it; nothing if it waits on, as for an entry of another
  // price or side than its stop and target were meant for.
  std::optional<LedgerPlan> PlanFor(const Side& side, bool entry,
                                    const OrderFigures& figures) const;
  RunOrder Placed(const Side& side, RunOrder::Kind kind, const OrderFigures& figures,
                  const Book& book) const;
  // Writes the order and the trades that it closes, and gives it the plan that waits for it. Throws
  // LedgerError.
  LedgerOrderKey Record(const Side& side, std::string_view position, bool entry,
                        const OrderFigures& figures);
  // After an entry: says why the plan that waits was not for it.
  void ExplainWaitingPlan(const Side& side);
  // The current price as a decimal.
  double ExactPrice() const;
  LedgerDetail Detail(const OrderFigures& figures) const;
  LedgerMoment Moment() const;
  // Shows the reason and returns the result.
  OrderResult Refuse(std::string_view why, OrderResult result = OrderResult::kRefused);

  SimSession& session_;
  RunInputs& inputs_;
  RunView& view_;
  Platform& platform_;
  LedgerConnection& ledger_;
  ChartSide& chart_;
  OrderResult last_result_ = OrderResult::kDone;
};

}  // namespace velumar
