#include "trading/ledger_row.h"

#include "base/dates.h"
#include "base/number_text.h"
#include "marketdata/interval.h"

namespace velumar {

namespace {

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

}  // namespace

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

LedgerWiped WipedHolding(const SimSession& session, std::string_view position, const Book& before,
                         const Side& side) {
  return {std::string(position),
          PlainValue(before.*side.Accum),
          PlainValue(before.*side.AvgPrice),
          RowDate(session),
          RowTime(session),
          RowPrice(session)};
}

}  // namespace velumar
