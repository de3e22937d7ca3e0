#include "trading/position_book.h"

#include <cmath>
#include <optional>

#include "base/number_text.h"

namespace velumar {

const Side kLongSide{
    &Book::LAccum,      &Book::LAmount,   &Book::LAvgPrice,      &Book::LUnrealisedMoney,
    &Book::LUnrealised, &Book::LRealised, &Book::LRealisedMoney, true};
const Side kShortSide{
    &Book::SAccum,      &Book::SAmount,   &Book::SAvgPrice,      &Book::SUnrealisedMoney,
    &Book::SUnrealised, &Book::SRealised, &Book::SRealisedMoney, false};

namespace {

// The stored value is rounded, so the next order computes with what the trader saw.
void RoundThrough(float& field, std::string_view pattern) {
  const std::optional<float> rounded = ToSingle(PatternText(field, pattern));
  if (!rounded) throw BookOverflow("the result is too large for the account");
  field = *rounded;
}

float UnrealisedMoney(const Book& book, const Side& side) {
  if (!(book.*side.Accum > 0)) return 0;
  return static_cast<float>(side.Points(book, book.MarketPrice) * double{book.*side.Accum} *
                            double{book.ProfitPerContract});
}

}  // namespace

float Stored(double value) {
  const auto stored = static_cast<float>(value);
  if (!std::isfinite(stored)) throw BookOverflow("the result is too large for the account");
  return stored;
}

double Side::Points(const Book& book, double price) const {
  const double average = book.*AvgPrice;
  return gains_on_rise ? price - average : average - price;
}

void RevaluePositions(Book& book) {
  book.LUnrealisedMoney = UnrealisedMoney(book, kLongSide);
  book.SUnrealisedMoney = UnrealisedMoney(book, kShortSide);
  book.Portfolio = static_cast<float>(double{book.Balance} + double{book.LUnrealisedMoney} +
                                      double{book.SUnrealisedMoney});
}

void ApplyOrderToBook(SimSession& session) {
  const double close = session.BarClose.at(static_cast<std::size_t>(session.BarIndex));
  Book& book = session;
  for (const Side& side : {kLongSide, kShortSide}) {
    book.*side.Accum = Stored(double{book.*side.Amount} + double{book.*side.Accum});
    book.*side.Unrealised = Stored(side.Points(book, close) * double{book.*side.Accum});
  }
  for (float* field : {&book.LAvgPrice, &book.SAvgPrice, &book.LUnrealised, &book.LRealised,
                       &book.SUnrealised, &book.SRealised, &book.BalancePoint}) {
    RoundThrough(*field, kTwoDecimalsPattern);
  }
  RoundThrough(book.Balance, kWholePattern);
  RoundThrough(book.Portfolio, kWholePattern);
  book.LRealisedMoney = 0;
  book.SRealisedMoney = 0;
}

}  // namespace velumar
