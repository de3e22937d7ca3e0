#include <cmath>
#include <random>

#include "base/number_text.h"
#include "support/order_fixture.h"

namespace velumar {
namespace {

// The account written down a second time, plainly: one float per figure, one formula per line.
struct PlainAccount {
  bool stock = false;
  float margin = 0;
  float profit = 0;
  float used = 0;
  float balance = 0;
  float portfolio = 0;
  float held[2] = {0, 0};
  float average[2] = {0, 0};
  float realised[2] = {0, 0};
  float points = 0;
  int rows = 0;

  static float Rounded(float value, double places) {
    // As a person rounds the number that is written down: the shortest digits of the float.
    const double written = std::stod(ShortestDigits(value));
    const double scaled = std::abs(written) * places;
    double whole = std::floor(scaled + 0.5);
    // The digits are decimal: what is written as a half is one, whatever its binary neighbours say.
    if (std::abs(scaled - std::floor(scaled) - 0.5) < 1e-9 + scaled * 1e-15) {
      whole = std::floor(scaled) + 1;
    }
    return static_cast<float>(std::copysign(whole / places, written));
  }
  static std::string ShortestDigits(float value) {
    for (int digits = 1; digits < 10; ++digits) {
      char text[40];
      std::snprintf(text, sizeof text, "%.*e", digits - 1, static_cast<double>(value));
      if (std::strtof(text, nullptr) == value) return text;
    }
    return std::to_string(value);
  }

  void Value(float price) {
    double worth = balance;
    for (int side = 0; side < 2; ++side) {
      const double gain =
          side == 0 ? double{price} - double{average[side]} : double{average[side]} - double{price};
      const auto money =
          held[side] > 0 ? static_cast<float>(gain * double{held[side]} * double{profit}) : 0.0F;
      worth += double{money};
    }
    portfolio = static_cast<float>(worth);
  }
  float Costs(double quantity, float price, double commission, double vat,
              float& order_value) const {
    order_value = static_cast<float>(quantity * double{stock ? price : margin});
    const auto fee =
        static_cast<float>(stock ? commission / 100 * double{order_value} : commission * quantity);
    const auto tax = static_cast<float>(vat / 100 * double{fee});
    fees = fee;
    taxes = tax;
    return fee;
  }
  mutable float fees = 0;
  mutable float taxes = 0;

  void Settle() {
    for (float& a : average) a = Rounded(a, 100);
    for (float& r : realised) r = Rounded(r, 100);
    points = Rounded(points, 100);
    balance = Rounded(balance, 1);
    portfolio = Rounded(portfolio, 1);
  }
  bool Enter(int side, double quantity, float price, double commission, double vat) {
    if (static_cast<float>(double{margin} + double{used}) > portfolio) return false;
    float value = 0;
    Costs(quantity, price, commission, vat, value);
    const auto now =
        static_cast<float>(double{fees} + double{value} + double{taxes} + double{used});
    if (now > portfolio) return false;
    used = now;
    const double before = held[side];
    const double added = static_cast<float>(quantity);
    average[side] = static_cast<float>((double{average[side]} * before + added * double{price}) /
                                       (before + added));
    held[side] = static_cast<float>(added + before);
    Settle();
    ++rows;
    return true;
  }
  // In the decimals that are written down; what reads the same in the panel's seven is all of it.
  static float Left(float held, float quantity) {
    const auto seven = [](float value) {
      char text[40];
      std::snprintf(text, sizeof text, "%.7g", static_cast<double>(value));
      return std::string(text);
    };
    if (seven(held) == seven(quantity)) return 0;
    return static_cast<float>(std::stold(ShortestDigits(held)) -
                              std::stold(ShortestDigits(quantity)));
  }
  void Leave(int side, double quantity, float price, double commission, double vat) {
    if (held[side] == 0) return;
    held[side] = Left(held[side], static_cast<float>(quantity));
    if (held[side] < 0) {
      held[side] = 0;
      average[side] = 0;
      return;
    }
    float value = 0;
    Costs(quantity, price, commission, vat, value);
    used = static_cast<float>(double{used} - (double{fees} + double{value} + double{taxes}));
    const double gain =
        side == 0 ? double{price} - double{average[side]} : double{average[side]} - double{price};
    realised[side] = static_cast<float>(quantity * gain);
    const auto money = static_cast<float>(double{profit} * double{realised[side]});
    points = static_cast<float>(double{realised[0]} + double{realised[1]});
    balance = static_cast<float>(double{balance} + double{money});
    Value(price);
    Settle();
    ++rows;
  }
};

class BookModelTest : public OrderFixture, public testing::WithParamInterface<bool> {};

TEST_P(BookModelTest, TenThousandOrdersAndSteps) {
  std::mt19937 random(GetParam() ? 5 : 3);
  const auto pick = [&random](int count) {
    return static_cast<int>(random() % static_cast<unsigned>(count));
  };
  PlainAccount model;
  model.stock = GetParam();
  if (model.stock) StockMarket();
  const char* commission = model.stock ? "0.25" : "450";
  const double fee = model.stock ? 0.25 : 450;
  Account(model.stock ? 100 : 1234.5F, model.stock ? 1 : 1000, commission, 9000000);
  model.margin = session.InitMargin;
  model.profit = session.ProfitPerContract;
  model.balance = model.portfolio = 9000000;
  const char* quantities[] = {"1", "2", "0.5", "3", "1,000", "0.1", "250.5", "0.7"};
  float price = 100;
  long done = 0;
  for (int i = 0; i < 10000; ++i) {
    // The margin of what was wiped out stays tied up: now and then the account starts afresh.
    if (i % 300 == 0) session.UsedMargin = model.used = 0;
    const std::string quantity = quantities[pick(8)];
    const double q = ToDouble(quantity).value();
    const int side = pick(2);
    switch (pick(5)) {
      case 0:
      case 1:
        done += model.Enter(side, q, price, fee, 7) ? 1 : 0;
        Order(side == 0 ? &OrderDesk::Long : &OrderDesk::Short, quantity);
        break;
      case 2:
        model.Leave(side, q, price, fee, 7);
        Order(side == 0 ? &OrderDesk::OffsetLong : &OrderDesk::OffsetShort, quantity);
        break;
      default:
        price = static_cast<float>(static_cast<int>(price * 100) + pick(401) - 200) / 100.0F;
        if (price < 1) price = 100;
        if (session.BarDate.size() > 30000) break;
        AddBar(price);
        model.Value(price);
    }
    ASSERT_EQ(session.UsedMargin, model.used) << i;
    ASSERT_EQ(session.Balance, model.balance) << i;
    ASSERT_EQ(session.Portfolio, model.portfolio) << i;
    ASSERT_EQ(session.LAccum, model.held[0]) << i;
    ASSERT_EQ(session.SAccum, model.held[1]) << i;
    ASSERT_EQ(session.LAvgPrice, model.average[0]) << i;
    ASSERT_EQ(session.SAvgPrice, model.average[1]) << i;
    ASSERT_EQ(session.LRealised, model.realised[0]) << i;
    ASSERT_EQ(session.SRealised, model.realised[1]) << i;
    ASSERT_EQ(session.BalancePoint, model.points) << i;
    ASSERT_EQ(session.LAmount, 0);
  }
  EXPECT_EQ(Rows(), model.rows);
  EXPECT_GT(done, 300);
}

INSTANTIATE_TEST_SUITE_P(Markets, BookModelTest, testing::Bool(),
                         [](const auto& market) { return market.param ? "Stock" : "Futures"; });

}  // namespace
}  // namespace velumar
