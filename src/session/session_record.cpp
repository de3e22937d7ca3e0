#include "session/session_record.h"

#include <algorithm>
#include <utility>

#include "ledger/plans.h"
#include "results/run_record.h"
#include "session/moment.h"

namespace velumar {

namespace {

OrderMark MarkOf(const RunOrder& order) {
  return {.bar = order.bar.value_or(0),
          .price = order.close.value_or(order.price),
          .is_long = order.is_long,
          .entry = order.kind == RunOrder::Kind::kEntry};
}

}  // namespace

void SessionRecord::BeginRun(const std::optional<BlindKey>& key, bool as_shown) {
  if (!ledger_.CanWrite()) return;
  const std::string now = clock_.UtcMoment();
  LedgerSession described = Session(now);
  if (key) described.mask = Encoded(*key);
  LedgerMoment moment = MomentOf(session_, now);
  moment.as_shown = as_shown;
  session_.SessionNumber = LedgerBeginRun(ledger_, Run(), described, moment);
}

void SessionRecord::SaveMoment() {
  if (session_.SessionNumber == 0 || !ledger_.CanWrite()) return;
  LedgerWriteMoment(ledger_, MomentOf(session_, clock_.UtcMoment()));
}

void SessionRecord::Restore(const LedgerPlayed& played) {
  const LedgerMoment& moment = played.moment;
  const auto bar_of = [this](int bar) {
    return static_cast<std::int16_t>(std::clamp(bar, 0, session_.LastArrayIndex()));
  };
  session_.FirstShownBar = bar_of(moment.first_shown);
  session_.NewestShownBar = bar_of(std::max(moment.newest_shown, moment.bar));
  const auto first = static_cast<std::size_t>(session_.FirstShownBar);
  session_.StartDate = std::to_string(session_.BarDate.at(first));
  session_.StartTime = std::to_string(session_.BarTime.at(first));
  session_.Again = played.session.again;
  session_.SessionNumber = moment.session;
  if (moment.session == 0) return;  // it begins here
  static_cast<Book&>(session_) = BookFromText(moment.book);
  const RunRecord record = ReadRecord(ledger_, LedgerScope::Session(moment.session));
  for (const RunOrder& order : record.orders) {
    session_.Matcher.Apply(order);
    if (order.quantity != 0) session_.Orders.push_back(MarkOf(order));
  }
  session_.Plans.Restore(record.orders, LedgerPlansOfSession(ledger_, moment.session));
  // A panel that was closed drops the holdings without an order.
  if (session_.LAccum == 0) session_.Plans.CloseAll(true);
  if (session_.SAccum == 0) session_.Plans.CloseAll(false);
}

LedgerRun SessionRecord::Run() const {
  LedgerRun run{.directory = session_.Run.directory,
                .symbol = session_.Run.symbol,
                .interval = session_.Run.interval,
                .start_date = {},
                .start_time = {},
                .market = session_.IsStockMarket() ? "stock" : "futures",
                .starting_money = session_.Balance,
                .margin = session_.InitMargin,
                .money_per_point = session_.ProfitPerContract};
  if (session_.HasBar(session_.BarIndex)) {
    const auto bar = static_cast<std::size_t>(session_.BarIndex);
    run.start_date = std::to_string(session_.BarDate[bar]);
    run.start_time = std::to_string(session_.BarTime[bar]);
  }
  return run;
}

LedgerSession SessionRecord::Session(std::string begun) const {
  return {.number = session_.SessionNumber,
          .directory = session_.Run.directory,
          .symbol = session_.Run.symbol,
          .interval = session_.Run.interval,
          .start_day = session_.Run.start_day,
          .account = {.money = inputs_.StartingMoney(),
                      .margin = inputs_.Margin(),
                      .money_per_point = inputs_.ProfitPerContract(),
                      .commission = inputs_.Commission(),
                      .vat = inputs_.Vat()},
          .begun = std::move(begun),
          .again = session_.Again};
}

}  // namespace velumar
