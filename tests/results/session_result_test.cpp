#include "results/session_result.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

namespace velumar {
namespace {

RunOrder Order(int bar, const std::string& position, double quantity) {
  RunOrder order;
  order.position = position;
  order.is_long = position.ends_with("Long");
  order.kind = position.starts_with("Offset") ? RunOrder::Kind::kOffset : RunOrder::Kind::kEntry;
  order.quantity = quantity;
  order.bar = bar;
  return order;
}

TEST(SessionResult, CountsTheTradesAndWhatIsStillHeld) {
  const std::vector<float> closes{10, 11, 15, 12, 20, 18};
  const auto result = [&](const std::vector<RunOrder>& orders) {
    return ResultOfSession(orders, closes, 1, 5, 100, 1);
  };
  EXPECT_EQ(result({}).played, 0);
  EXPECT_NEAR(result({}).moved, 700.0 / 11, 1e-9);
  const SessionResult closed = result({Order(1, "Long", 3), Order(2, "Offset Long", 3)});
  EXPECT_EQ(closed.played, 3 * 4 * 100);
  EXPECT_EQ(closed.held, 3 * 7 * 100);
  const SessionResult open =
      result({Order(1, "Short", 2), Order(3, "Offset Short", 1), Order(0, "Long", 9)});
  EXPECT_EQ(open.played, (-1 - 7) * 100) << "one closed at 12, one valued at the last close";
  EXPECT_EQ(open.held, 2 * 7 * 100) << "as much as was sold short";
  EXPECT_NEAR(open.chance, open.played, 1e-6) << "there is no other place for it";
  RunOrder wiped = Order(4, "Offset Long", 5);
  wiped.kind = RunOrder::Kind::kWiped;
  wiped.held = 2;
  EXPECT_EQ(result({Order(3, "Long", 2), wiped}).played, 2 * 8 * 100);
  EXPECT_EQ(result({Order(5, "Short", 2)}).held, 2 * 7 * 100) << "the last bar counts";
  EXPECT_EQ(ResultOfSession({}, {-10, -5}, 0, 1, 1, 1).moved, 50) << "up, below zero too";
  for (const auto& [money, text] :
       {std::pair(0.5, "+1 "), {0.49, "0 "}, {-0.49, "0 "}, {-0.5, "-1 "}, {0.0, "0 "}}) {
    EXPECT_THAT(ResultText({.played = money}),
                testing::StartsWith(std::string("Your trades: ") + text));
  }
}

// The average over all places is known for a curve: a bar later gains what the curve gains there.
TEST(SessionResult, ChanceIsTheAverageOverTheSession) {
  std::vector<float> closes;
  for (int i = 0; i < 400; ++i) closes.push_back(50 + 20 * std::sin(static_cast<float>(i) / 30));
  const std::vector<RunOrder> orders{Order(210, "Long", 1), Order(230, "Offset Long", 1)};
  double all = 0;
  int places = 0;
  for (int bar = 100; bar + 20 <= 380; ++bar, ++places) {
    all += closes[static_cast<std::size_t>(bar) + 20] - closes[static_cast<std::size_t>(bar)];
  }
  const SessionResult result = ResultOfSession(orders, closes, 100, 380, 10, 3);
  EXPECT_NEAR(result.chance, all / places * 10, 15) << "a draw is off by 90 on average";
  EXPECT_EQ(result.chance, ResultOfSession(orders, closes, 100, 380, 10, 3).chance);
  EXPECT_THAT(ResultText(result), testing::HasSubstr("on average of 1,000 draws"));
}

}  // namespace
}  // namespace velumar
