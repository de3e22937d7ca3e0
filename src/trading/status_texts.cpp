#include "trading/status_texts.h"

#include "base/dates.h"
#include "base/number_text.h"

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

std::string Prices(const SimSession& session) {
  const bool on_bar = session.HasBar(session.BarIndex);
  const auto price = [&](const std::vector<float>& prices) {
    const float value = on_bar ? prices[static_cast<std::size_t>(session.BarIndex)] : 0.0F;
    return PatternText(value, kPricePattern);
  };
  return "O: " + price(session.BarOpen) + " H: " + price(session.BarHigh) +
         " L: " + price(session.BarLow) + " C: " + price(session.BarClose);
}

StatusTexts::Moment MomentOf(const SimSession& session, const LocaleInfo& locale) {
  const auto bar = static_cast<std::size_t>(session.BarIndex);
  // There is no close before the first bar's.
  return {DateText(session.BarDate[bar], locale.ShortDatePattern()) + " " +
              PatternText(session.BarTime[bar] / kSecondsPlaces, kHoursMinutesPattern),
          bar > 0 && session.BarClose[bar] < session.BarClose[bar - 1]};
}

}  // namespace

void ShowStatus(const SimSession& session, RunView& view, const LocaleInfo& locale) {
  view.OpenPanel();  // before the account is read
  const bool stock = session.IsStockMarket();
  StatusTexts texts{.positions = stock ? StockPositions(session) : FuturesPositions(session),
                    .account = (stock ? "Vol. Buy [" : "Initial Margin [") +
                               Whole(session.UsedMargin) + "]   Porfolio [" +
                               Whole(session.Portfolio) + "]",
                    .portfolio = Whole(session.Portfolio),
                    .loss = session.Portfolio < 0,
                    .prices = Prices(session),
                    .moment = {}};
  if (session.HasBar(session.BarIndex)) texts.moment = MomentOf(session, locale);
  view.ShowStatus(texts);
}

std::string BarLine(const SimSession& session, const LocaleInfo& locale) {
  const auto bar = static_cast<std::size_t>(session.BarIndex);
  return session.ChartWarning + "[" + session.Run.symbol +
         "]  Date: " + DateText(session.BarDate.at(bar), locale.ShortDatePattern()) + " " +
         PatternText(session.BarTime.at(bar), kTimePattern) +
         "  Close: " + PatternText(session.BarClose.at(bar), kClosePattern);
}

}  // namespace velumar
