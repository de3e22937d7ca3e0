#pragma once

#include <stdexcept>

#include "session/sim_session.h"

namespace velumar {

// A result that no 32-bit float holds.
class BookOverflow : public std::range_error {
 public:
  using std::range_error::range_error;
};

// The one rounding of an assignment to a field of the book. Throws BookOverflow.
float Stored(double value);

// One side of the book: its fields, and which way a price must go to gain on it.
struct Side {
  float Book::*Accum;            // quantity held
  float Book::*Amount;           // quantity of the order in hand
  float Book::*AvgPrice;         // average entry price
  float Book::*UnrealisedMoney;  // of what is held, at every step
  float Book::*Unrealised;       // points, as of the last order
  float Book::*Realised;         // points of the last offset
  float Book::*RealisedMoney;    // of the offset in hand
  bool gains_on_rise;

  // The price difference that one unit has gained since its entry.
  double Points(const Book& book, double price) const;
};

extern const Side kLongSide;
extern const Side kShortSide;

// Values what is held at MarketPrice: the unrealised money of both sides, and Portfolio.
void RevaluePositions(SimSession& session);

// Takes the order in hand into the book at the close of the current bar: quantities, unrealised
// points, and the rounding of averages and points to two decimals and of Balance and Portfolio to
// whole money. Throws BookOverflow.
void ApplyOrderToBook(SimSession& session);

}  // namespace velumar
