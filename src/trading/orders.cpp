#include "trading/orders.h"

#include <utility>
#include <vector>

#include "base/dates.h"
#include "base/decimal.h"
#include "base/number_text.h"
#include "ledger/notes.h"
#include "marketdata/interval.h"
#include "session/moment.h"
#include "session/plan_levels.h"
#include "session/played_trades.h"
#include "trading/status_texts.h"

namespace velumar {

namespace {

constexpr std::string_view kNotEnough = "not enuogh money";

std::string NotPlaced(const LedgerError& error) {
  return "The order was not placed, because its row could not be written to the ledger.\n" +
         std::string(error.what());
}

// Below it, all whole digits of a quantity show.
constexpr float kAllWholeDigitsShow = 1e7F;

// A quantity that offsets all that is held.
std::string AllOf(float held) {
  return held < kAllWholeDigitsShow ? PlainNumberText(held) : ExactText(held);
}

// What an offset leaves, computed in the decimals that the trader sees: 0.7 minus 0.7 is 0,
// although the float held is a little less than 0.7. A sum of entries may be off by a digit that
// the panel doesn't show; a quantity that looks the same closes all of it. Negative if more is
// offset than held.
float RemainderOf(float held, float quantity) {
  const bool reads_the_same = PlainNumberText(held) == PlainNumberText(quantity);
  if (reads_the_same && held < kAllWholeDigitsShow) return 0;
  const Decimal left = Decimal::Shortest(held).Minus(Decimal::Shortest(quantity));
  return ToSingle(left.Canonical()).value_or(0);
}

// The value of the plain number text: the ledger stores what a trader sees.
double PlainValue(float figure) { return ToDouble(PlainNumberText(figure)).value_or(0); }

LedgerValue IntervalValue(const std::string& interval) {
  if (const auto minutes = ToDouble(interval)) return *minutes;
  return interval;
}

std::vector<LedgerValue> SideValues(const Book& book, const Side& side, bool offset) {
  return {PlainValue(book.*side.AvgPrice),
          offset ? 0.0 : PlainValue(book.*side.Amount),
          offset ? 1.0 : 0.0,
          PlainValue(book.*side.Accum),
          PlainValue(book.*side.Unrealised),
          offset ? PlainValue(book.*side.Realised) : 0.0};
}

std::string RowDate(const SimSession& session) {
  return IsoDate(session.BarDate.at(static_cast<std::size_t>(session.BarIndex)));
}

std::string RowTime(const SimSession& session) {
  return PatternText(session.BarTime.at(static_cast<std::size_t>(session.BarIndex)), kTimePattern);
}

double RowPrice(const SimSession& session) {
  const float close = session.BarClose.at(static_cast<std::size_t>(session.BarIndex));
  return ToDouble(PatternText(close, kClosePattern)).value_or(0);
}

// The values of an order's row for PortfolioColumns(), read after the book has taken the order. A
// row is about its own side only: the other side's columns are 0 even if it holds something.
std::vector<LedgerValue> LedgerRow(const SimSession& session, const Side& side,
                                   std::string_view position, bool offset) {
  const std::vector<LedgerValue> nothing(6, LedgerValue(0.0));
  const std::vector<LedgerValue> own = SideValues(session, side, offset);
  const bool is_long = side.gains_on_rise;
  std::vector<LedgerValue> row{1.0,
                               session.Run.symbol,
                               IntervalValue(IntervalToMatch(session.Run.interval)),
                               RowDate(session),
                               RowTime(session),
                               RowPrice(session),
                               std::string(position)};
  const auto append = [&row](const std::vector<LedgerValue>& values) {
    row.insert(row.end(), values.begin(), values.end());
  };
  append(is_long ? own : nothing);
  append(is_long ? nothing : own);
  append({PlainValue(session.BalancePoint), PlainValue(session.Commission),
          PlainValue(session.Balance)});
  return row;
}

// What the ledger keeps of a holding in `before` that too large an offset has dropped at this bar.
LedgerWiped DroppedPosition(const SimSession& session, std::string_view position,
                            const Book& before, const Side& side) {
  return {std::string(position),
          PlainValue(before.*side.Accum),
          PlainValue(before.*side.AvgPrice),
          RowDate(session),
          RowTime(session),
          RowPrice(session)};
}

std::string TooMuchText(float quantity, float held) {
  return PatternText(quantity, kQuantityPattern) + " is more than the " +
         PatternText(held, kQuantityPattern) + " held: position dropped, no P/L booked";
}

std::string NothingHeldText(const Side& side) {
  return std::string("nothing to offset: no ") + (side.gains_on_rise ? "long" : "short") +
         " position is held";
}

}  // namespace

OrderResult OrderDesk::Enter(const Side& side, std::string_view position) {
  if (!OnBar()) return OrderResult::kInvalid;
  const OrderFigures figures =
      ReadOrderFigures(inputs_, session_.IsStockMarket(), inputs_.Quantity());
  if (!figures.problem.empty()) return Refuse(figures.problem, OrderResult::kInvalid);
  view_.SetStatusLine(BarLine(session_, platform_.locale));
  return AllOrNothing([&] { return Fill(side, position, figures); });
}

void OrderDesk::OffsetAll() {
  if (session_.LAccum > 0) Offset(kLongSide, kOffsetLong, AllOf(session_.LAccum));
  if (session_.SAccum > 0) Offset(kShortSide, kOffsetShort, AllOf(session_.SAccum));
}

OrderResult OrderDesk::Offset(const Side& side, std::string_view position,
                              const std::string& quantity) {
  if (!OnBar()) return OrderResult::kInvalid;
  session_.MarketPrice = session_.BarClose[static_cast<std::size_t>(session_.BarIndex)];
  if (session_.*side.Accum == 0) {
    return Refuse(NothingHeldText(side), OrderResult::kNothingHeld);
  }
  const OrderFigures figures = ReadOrderFigures(inputs_, session_.IsStockMarket(), quantity);
  if (!figures.problem.empty()) return Refuse(figures.problem, OrderResult::kInvalid);
  return AllOrNothing([&] { return Close(side, position, figures); });
}

bool OrderDesk::OnBar() {
  std::string problem = session_.Preparing ? "not yet: the run is being prepared"
                                           : LoadedSeriesProblem(session_, inputs_);
  if (problem.empty() && !session_.HasBar(session_.BarIndex)) problem = "No current bar";
  if (!problem.empty()) Refuse(problem);
  return problem.empty();
}

OrderResult OrderDesk::AllOrNothing(const std::function<OrderResult()>& work) {
  const Book before = session_;
  const auto restore = [&] { static_cast<Book&>(session_) = before; };
  try {
    return work();
  } catch (const BookOverflow& error) {
    restore();
    return Refuse(error.what());
  } catch (const LedgerError& error) {
    restore();
    view_.ShowRefusal("order not placed: it could not be saved in the ledger");
    platform_.boxes.Show(NotPlaced(error), BoxIcon::kExclamation);
    return OrderResult::kRefused;
  }
}

OrderResult OrderDesk::Fill(const Side& side, std::string_view position,
                            const OrderFigures& figures) {
  Book& book = session_;
  book.MarketPrice = session_.BarClose[static_cast<std::size_t>(session_.BarIndex)];
  const float used_before = book.UsedMargin;
  // The margin of one contract, whatever the quantity and the market.
  if (Stored(double{book.InitMargin} + double{book.UsedMargin}) > book.Portfolio) {
    return Refuse(kNotEnough);
  }
  const double value = Costs(figures);
  book.UsedMargin =
      Stored(double{book.Commission} + value + double{book.VatAmount} + double{book.UsedMargin});
  if (book.UsedMargin > book.Portfolio) {
    book.UsedMargin = used_before;
    return Refuse(kNotEnough);
  }
  book.*side.Amount = figures.quantity_single;
  Average(side);
  ApplyOrderToBook(session_);
  LedgerOrderKey key;
  if (Stored(double{book.*side.Accum} + double{book.*side.Amount}) > 0) {
    key = Record(side, position, true, figures);
  }
  ShowStatus(session_, view_, platform_.locale);
  if (book.*side.Amount == 0) {
    view_.ShowRefusal("the quantity is 0: nothing was opened");
  } else {
    Mark(side, true, key);
    ExplainWaitingPlan(side);
  }
  book.*side.Amount = 0;
  return OrderResult::kDone;
}

std::optional<LedgerPlan> OrderDesk::PlanFor(const Side& side, bool entry,
                                             const OrderFigures& figures) const {
  std::optional<LedgerPlan> plan = session_.Plans.Next();
  if (!plan || figures.quantity_single == 0) return std::nullopt;
  const bool is_long = side.gains_on_rise;
  const double price = ExactPrice();
  if (plan->HasLevels() && !(entry && FitsSide(*plan, is_long, price))) return std::nullopt;
  plan->stop_since = plan->target_since = session_.BarIndex;
  plan->risk = RiskOf(*plan, is_long, price, figures.quantity, session_.ProfitPerContract);
  return plan;
}

LedgerOrderKey OrderDesk::Record(const Side& side, std::string_view position, bool entry,
                                 const OrderFigures& figures) {
  std::optional<LedgerPlan> plan = PlanFor(side, entry, figures);
  RunOrder order =
      Placed(side, entry ? RunOrder::Kind::kEntry : RunOrder::Kind::kOffset, figures, session_);
  TradeMatcher matcher = session_.Matcher;
  std::vector<LedgerTrade> closed;
  if (!entry) closed = RecordedTrades(session_, matcher.Apply(order));
  const LedgerOrderKey key =
      LedgerInsertOrder(ledger_, LedgerRow(session_, side, position, !entry), Detail(figures),
                        Moment(), plan ? &*plan : nullptr, &closed);
  order.key = key;
  if (entry) matcher.Apply(order);
  session_.Matcher = std::move(matcher);
  if (figures.quantity_single == 0) return key;
  if (plan) {
    plan->order = key;
    session_.Plans.SetNext(std::nullopt);
  }
  session_.Plans.Add({.key = key,
                      .is_long = side.gains_on_rise,
                      .entry = entry,
                      .bar = session_.BarIndex,
                      .price = ExactPrice(),
                      .quantity = figures.quantity,
                      .held = entry ? figures.quantity : 0,
                      .plan = std::move(plan)});
  if (!entry && session_.*side.Accum == 0) session_.Plans.CloseAll(side.gains_on_rise);
  return key;
}

// As a row and its detail are read again. A holding that was wiped out is the one in `book`, which
// costs nothing.
RunOrder OrderDesk::Placed(const Side& side, RunOrder::Kind kind, const OrderFigures& figures,
                           const Book& book) const {
  const LedgerDetail detail = Detail(figures);
  const bool wiped = kind == RunOrder::Kind::kWiped;
  RunOrder order;
  order.kind = kind;
  order.is_long = side.gains_on_rise;
  order.iso_date = RowDate(session_);
  order.time = RowTime(session_);
  order.price = RowPrice(session_);
  order.quantity = detail.quantity;
  order.held = PlainValue(book.*side.Accum);
  order.commission = wiped ? 0 : PlainValue(session_.Commission);
  order.money_per_point = session_.ProfitPerContract;
  if (!wiped) order.close = detail.close;
  order.vat = wiped ? 0 : PlainValue(session_.VatAmount);
  order.bar = detail.bar_index;
  order.newest_shown = detail.newest_shown;
  return order;
}

double OrderDesk::Costs(const OrderFigures& figures) {
  constexpr double kPercent = 100;
  const bool stock = session_.IsStockMarket();
  const double unit = stock ? session_.MarketPrice : session_.InitMargin;
  const double value = Stored(figures.quantity * unit);
  session_.Commission =
      Stored(stock ? figures.commission / kPercent * value : figures.commission * figures.quantity);
  session_.VatAmount = Stored(figures.vat / kPercent * double{session_.Commission});
  return value;
}

void OrderDesk::Average(const Side& side) {
  Book& book = session_;
  const double held = book.*side.Accum;
  const double added = book.*side.Amount;
  const double value = double{book.*side.AvgPrice} * held + added * double{book.MarketPrice};
  book.*side.AvgPrice = Stored(held + added) > 0 ? Stored(value / (held + added)) : 0;
}

OrderResult OrderDesk::Close(const Side& side, std::string_view position,
                             const OrderFigures& figures) {
  Book& book = session_;
  const Book before = book;
  book.*side.Accum = RemainderOf(before.*side.Accum, figures.quantity_single);
  if (book.*side.Accum < 0) return DropPosition(side, position, before, figures);
  const double value = Costs(figures);
  book.UsedMargin =
      Stored(double{book.UsedMargin} - (double{book.Commission} + value + double{book.VatAmount}));
  book.*side.Realised = Stored(figures.quantity * side.Points(book, book.MarketPrice));
  book.*side.RealisedMoney = Stored(double{book.ProfitPerContract} * double{book.*side.Realised});
  book.BalancePoint = Stored(double{book.LRealised} + double{book.SRealised});
  book.Balance = Stored(double{book.Balance} + double{book.*side.RealisedMoney});
  RevaluePositions(session_);
  ApplyOrderToBook(session_);
  const LedgerOrderKey key = Record(side, position, false, figures);
  ShowStatus(session_, view_, platform_.locale);
  if (figures.quantity_single == 0) {
    view_.ShowRefusal("the quantity is 0: nothing was closed");
  } else {
    Mark(side, false, key);
  }
  return OrderResult::kDone;
}

// No money moves and no row is written, but the ledger keeps what was dropped.
OrderResult OrderDesk::DropPosition(const Side& side, std::string_view position, const Book& before,
                                    const OrderFigures& figures) {
  session_.*side.Accum = 0;
  session_.*side.AvgPrice = 0;
  if (ledger_.CanWrite()) {
    TradeMatcher matcher = session_.Matcher;
    const std::vector<LedgerTrade> closed = RecordedTrades(
        session_, matcher.Apply(Placed(side, RunOrder::Kind::kWiped, figures, before)));
    LedgerNoteWiped(ledger_, DroppedPosition(session_, position, before, side), Detail(figures),
                    Moment(), &closed);
    session_.Matcher = std::move(matcher);
  }
  session_.Plans.CloseAll(side.gains_on_rise);  // once nothing can fail any more
  ShowStatus(session_, view_, platform_.locale);
  Mark(side, false, {});
  return Refuse(TooMuchText(figures.quantity_single, before.*side.Accum), OrderResult::kTooMuch);
}

void OrderDesk::Mark(const Side& side, bool entry, const LedgerOrderKey& key) {
  session_.Orders.push_back({session_.BarIndex, session_.MarketPrice, side.gains_on_rise, entry});
  chart_.ShowPositions();
  const std::string picture = LedgerPictureFile(ledger_, key);
  if (!picture.empty()) chart_.TakePicture(picture);
}

void OrderDesk::ExplainWaitingPlan(const Side& side) {
  const auto& plan = session_.Plans.Next();
  if (!plan) return;
  const bool stop = plan->stop && StopDistance(*plan->stop, side.gains_on_rise, ExactPrice()) <= 0;
  view_.SetStatusLine("The plan still waits: its " + std::string(stop ? "stop " : "target ") +
                      PlanPriceText(stop ? *plan->stop : plan->target.value_or(0)) +
                      " is on the wrong side of " + PlanPriceText(ExactPrice()) + ".");
}

double OrderDesk::ExactPrice() const { return ReadableDouble(session_.MarketPrice); }

LedgerDetail OrderDesk::Detail(const OrderFigures& figures) const {
  return {figures.quantity, session_.VatAmount, session_.BarIndex, session_.NewestShownBar,
          ExactPrice()};
}

LedgerMoment OrderDesk::Moment() const {
  LedgerMoment moment = MomentOf(session_, platform_.clock.UtcMoment());
  moment.as_shown = true;
  return moment;
}

OrderResult OrderDesk::Refuse(std::string_view why, OrderResult result) {
  view_.ShowRefusal(why);
  return result;
}

}  // namespace velumar
