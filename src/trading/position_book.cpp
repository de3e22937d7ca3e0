#include "trading/position_book.h"

#include <string>

namespace velumar {

bool IsStockMarket(const SimSession& session) {
  return session.DataDir.find("SET") != std::string::npos;
}

void RevaluePositions(SimSession& session) {
  const double price = session.MarketPrice;
  const double money_per_point = session.ProfitPerContract;
  const double long_average = session.LAvgPrice;
  const double short_average = session.SAvgPrice;
  session.LUnrealisedMoney =
      session.LAccum > 0
          ? static_cast<float>((price - long_average) * double{session.LAccum} * money_per_point)
          : 0.0F;
  session.SUnrealisedMoney =
      session.SAccum > 0
          ? static_cast<float>((short_average - price) * double{session.SAccum} * money_per_point)
          : 0.0F;
  session.Portfolio = static_cast<float>(double{session.Balance} + double{session.LUnrealisedMoney} +
                                         double{session.SUnrealisedMoney});
}

}  // namespace velumar
