#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "ledger/ledger.h"
#include "platform/platform.h"
#include "session/run_inputs.h"
#include "session/run_view.h"
#include "session/sim_session.h"
#include "trading/account.h"
#include "trading/position_book.h"

namespace velumar {

enum class OrderResult : std::uint8_t {
  kDone,
  kRefused,      // a money test, a result that no field holds, a row that can't be written
  kNothingHeld,  // an offset of a side that holds nothing
  kTooMuch,      // an offset of more than is held: the holding is wiped out
  kInvalid,      // no bar of this run yet, or a box whose text can't be used
};

// The four orders, filled at once and in full at the close of the current bar, or not at all. Each
// that is done has its row in the ledger before the call returns.
class OrderDesk {
 public:
  OrderDesk(SimSession& session, RunInputs& inputs, RunView& view, Platform& platform,
            LedgerConnection& ledger)
      : session_(session), inputs_(inputs), view_(view), platform_(platform), ledger_(ledger) {}

  OrderResult Long() { return Enter(kLongSide, "Long"); }
  OrderResult Short() { return Enter(kShortSide, "Short"); }
  OrderResult OffsetLong() { return Offset(kLongSide, "Offset Long"); }
  OrderResult OffsetShort() { return Offset(kShortSide, "Offset Short"); }

  // Of the last click on an order.
  OrderResult LastResult() const { return last_result_; }

 private:
  OrderResult Enter(const Side& side, std::string_view position);
  OrderResult Offset(const Side& side, std::string_view position);
  OrderResult Finished(OrderResult result);

  bool OnBar();
  OrderResult Fill(const Side& side, std::string_view position, const OrderFigures& figures);
  OrderResult Close(const Side& side, std::string_view position, const OrderFigures& figures);
  // The order's value; Commission and VatAmount are left in the book.
  double Costs(const OrderFigures& figures);
  void Average(const Side& side);
  void WipeOut(const Side& side, std::string_view position, const Book& before,
               const OrderFigures& figures);
  // Runs an order's work on the book; whatever fails in it leaves the book as it was.
  OrderResult Whole(const std::function<OrderResult()>& work);
  void WriteRow(const Side& side, std::string_view position, bool offset,
                const OrderFigures& figures);
  LedgerDetail Detail(const OrderFigures& figures) const;
  OrderResult Refuse(std::string_view why);

  SimSession& session_;
  RunInputs& inputs_;
  RunView& view_;
  Platform& platform_;
  LedgerConnection& ledger_;
  OrderResult last_result_ = OrderResult::kDone;
};

}  // namespace velumar
