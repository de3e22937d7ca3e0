#pragma once

#include <stdexcept>

#include "session/sim_session.h"

namespace velumar {

// A result that doesn't fit a 32-bit float.
class BookOverflow : public std::range_error {
 public:
  using std::range_error::range_error;
};

// Rounds a result to a field of the book. Throws BookOverflow.
float Stored(double value);

// One side of the book: its fields, and which way the price must move for a gain. Orders of both
// sides share one code path through it.
struct Side {
  float Book::*Accum;            // quantity held
  float Book::*Amount;           // quantity of the current order
  float Book::*AvgPrice;         // average entry price
  float Book::*UnrealisedMoney;  // of what is held, at every step
  float Book::*Unrealised;       // points, as of the last order
  float Book::*Realised;         // points of the last offset
  float Book::*RealisedMoney;    // of the current offset
  bool gains_on_rise;

  // What one unit has gained since its entry, in points.
  double Points(const Book& book, double price) const;
};

extern const Side kLongSide;
extern const Side kShortSide;

// Values both sides at MarketPrice: their unrealised money, and Portfolio.
void RevaluePositions(Book& book);

// Enters the current order into the book at the close of the current bar: adds its quantity,
// computes the unrealised points, and rounds averages and points to two decimals, Balance and
// Portfolio to whole money. Throws BookOverflow.
void ApplyOrderToBook(SimSession& session);

}  // namespace velumar
