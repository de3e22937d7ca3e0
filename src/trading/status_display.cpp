#include "trading/status_display.h"

#include "base/number_text.h"
#include "session/market_family.h"
#include "session/status_line.h"

namespace velumar {

namespace {

// hhmmss as hours and minutes.
constexpr std::string_view kHoursMinutesPattern = "0#:##";
constexpr int kSecondsPlaces = 100;

std::string Whole(float value) { return PatternText(value, kWholePattern); }
std::string TwoDecimals(float value) { return PatternText(value, kTwoDecimalsPattern); }

std::string StockPositions(const SimSession& book) {
  return "(Buy:= " + Whole(book.LAccum) + " Shares   Avg. Buy:=" + TwoDecimals(book.LAvgPrice) +
         " ) ";
}

std::string FuturesPositions(const SimSession& book) {
  return "( L=" + ReadableNumberText(book.LAccum) + " Avg=" + TwoDecimals(book.LAvgPrice) +
         " )  ( S=" + ReadableNumberText(book.SAccum) + " Avg= " + TwoDecimals(book.SAvgPrice) +
         " ) ";
}

}  // namespace

void StatusDisplay::ShowStatus() {
  ShowAccount();
  ShowScore();
  ShowBar();
}

void StatusDisplay::ShowAccount() {
  const bool stock = IsStockMarket(session_);
  Form3& panel = desktop_.form3();
  panel.Label6.SetText(stock ? StockPositions(session_) : FuturesPositions(session_));
  panel.lblinfo.SetText((stock ? "Vol. Buy [" : "Initial Margin [") + Whole(session_.UsedMargin) +
                        "]   Porfolio [" + Whole(session_.Portfolio) + "]");
  panel.lblinfo.SetForeColour(kBlue);  // a refusal was red
}

void StatusDisplay::ShowScore() {
  Label& score = desktop_.frmBigScore().lblScore;
  score.SetForeColour(session_.Portfolio < 0 ? kRed : kBlue);
  score.SetText(Whole(session_.Portfolio));
}

void StatusDisplay::ShowBar() {
  if (session_.HasBar(session_.BarIndex)) ShowMoment(static_cast<std::size_t>(session_.BarIndex));
  desktop_.frmBigPrice().lblScore.SetText(PriceText());
}

void StatusDisplay::ShowMoment(std::size_t bar) {
  // At the first bar there is nothing to have fallen from.
  const bool fell = bar > 0 && session_.BarClose[bar] < session_.BarClose[bar - 1];
  desktop_.frmBigPrice().lblScore.SetForeColour(fell ? kRed : kBlue);
  desktop_.frmBigDateTime().lblScore.SetText(
      DateDisplayText(session_.BarDate[bar], locale_) + " " +
      PatternText(session_.BarTime[bar] / kSecondsPlaces, kHoursMinutesPattern));
}

std::string StatusDisplay::PriceText() const {
  const bool on_bar = session_.HasBar(session_.BarIndex);
  const auto price = [&](const std::vector<float>& prices) {
    const float value = on_bar ? prices[static_cast<std::size_t>(session_.BarIndex)] : 0.0F;
    return PatternText(value, kPricePattern);
  };
  return "O: " + price(session_.BarOpen) + " H: " + price(session_.BarHigh) +
         " L: " + price(session_.BarLow) + " C: " + price(session_.BarClose);
}

}  // namespace velumar
