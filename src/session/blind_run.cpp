#include "session/blind_run.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace velumar {

void BlindRun::HideSymbol() {
  entered_symbol_ = std::exchange(session_.Symbol, std::string(kBlindSymbol));
}

void BlindRun::RestoreSymbol() {
  if (entered_symbol_ && session_.Symbol == kBlindSymbol) session_.Symbol = *entered_symbol_;
  entered_symbol_.reset();
}

RevealedSession BlindRun::Unrecorded() const {
  const BlindKey& key = source_.Key().value();
  const auto day = [&](int bar) {
    return key.mask.RealDate(session_.BarDate.at(static_cast<std::size_t>(bar)));
  };
  return {.key = key,
          .interval = session_.Run.interval,
          .first_day = day(session_.FirstShownBar),
          .last_day = day(session_.NewestShownBar),
          .closes = {}};
}

// The book follows the prices, and the money per point the other way round, so money stays.
void BlindRun::Show(const BlindKey& key) {
  const int bars = std::max(session_.BarIndex + 1, 1);
  const std::vector<OrderMark> orders = std::exchange(session_.Orders, {});
  const TradePlans plans = std::exchange(session_.Plans, {});
  session_.Run.symbol = key.symbol;
  session_.Run.start_day = key.start_day;
  session_.Run.blind = false;
  source_.SetKey(std::nullopt);
  chart_.CloseCharts();
  if (!store_.Refill()) return;
  chart_.OpenChart();
  if (!store_.Prepare(bars)) return;
  store_.LoadSeries();
  for (OrderMark order : orders) {
    order.price = session_.BarClose.at(static_cast<std::size_t>(order.bar));
    session_.Orders.push_back(order);
  }
  session_.Plans = plans;
  session_.Plans.Scale(1 / key.mask.factor);
  const auto factor = static_cast<float>(key.mask.factor);
  session_.MarketPrice = session_.BarClose.at(static_cast<std::size_t>(session_.BarIndex));
  session_.LAvgPrice /= factor;
  session_.SAvgPrice /= factor;
  session_.ProfitPerContract *= factor;
  chart_.RefreshCharts();
}

}  // namespace velumar
