#include "progress/played_ledger.h"

#include <cstddef>
#include <string>
#include <unordered_map>

#include "base/dates.h"
#include "base/number_text.h"

namespace velumar {

namespace {

// Texts, each kept once.
class Names {
 public:
  explicit Names(std::vector<std::string>& texts) : texts_(texts) {}

  std::int32_t PlaceOf(const std::string& text) {
    const auto [place, is_new] =
        places_.try_emplace(text, static_cast<std::int32_t>(texts_.size()));
    if (is_new) texts_.push_back(text);
    return place->second;
  }

 private:
  std::vector<std::string>& texts_;
  std::unordered_map<std::string, std::int32_t> places_;
};

struct HashOfKey {
  std::size_t operator()(const LedgerOrderKey& key) const {
    return std::hash<std::int64_t>()((std::int64_t{key.run} << 32) + key.place);
  }
};

class Gathering {
 public:
  Gathering(const std::vector<LedgerEntryPlan>& plans, std::size_t trades) {
    played_.trades.reserve(trades);
    for (const LedgerEntryPlan& plan : plans) plans_.insert_or_assign(plan.order, &plan);
  }

  void Add(const PlayedScope& scope) {
    const LedgerRun& began = scope.state.began;
    PlayedSession& session = played_.sessions.emplace_back();
    session.scope = scope.state.scope;
    session.symbol = symbols_.PlaceOf(began.symbol);
    session.interval = ExactNumber<std::int32_t>(began.interval).value_or(kAbsent);
    session.blind = scope.state.blind;
    session.starting_money = began.starting_money;
    session.first_day = scope.trades.first_day;
    session.last_day = scope.trades.last_day;
    session.played_at = scope.state.touched;
    session.first_bar = scope.trades.first_bar;
    session.closes = scope.trades.closes;
    for (const LedgerTrade& trade : scope.trades.trades) {
      if (trade.money) Add(trade);
    }
  }

  Played Take() { return std::move(played_); }

 private:
  void Add(const LedgerTrade& from) {
    PlayedTrade& trade = played_.trades.emplace_back();
    trade.session = static_cast<std::int32_t>(played_.sessions.size()) - 1;
    trade.entry_bar = from.entry.bar.value_or(kAbsent);
    trade.exit_bar = from.exit.bar.value_or(kAbsent);
    trade.entry_day = from.entry.day;
    trade.exit_day = from.exit.day;
    trade.weekday =
        static_cast<std::int8_t>(trade.entry_day == 0 ? kAbsent : Weekday(trade.entry_day));
    if (played_.sessions.back().interval != kAbsent) {
      trade.hour = static_cast<std::int8_t>(from.entry.time / 10'000);
    }
    trade.is_long = from.is_long;
    trade.look_ahead = from.look_ahead;
    trade.quantity = from.quantity;
    trade.entry_price = from.entry.price;
    trade.exit_price = from.exit.price;
    trade.money_per_point = from.money_per_point.value_or(0);
    trade.money = *from.money;
    trade.costs = from.costs;
    if (from.adverse) trade.adverse = static_cast<float>(*from.adverse);
    if (from.favourable) trade.favourable = static_cast<float>(*from.favourable);
    const auto plan = plans_.find(from.entry.order);
    if (plan == plans_.end()) return;
    trade.confidence = static_cast<std::uint8_t>(plan->second->confidence);
    trade.risk = plan->second->risk * from.entry_share;
    if (!plan->second->setup.empty()) trade.setup = setups_.PlaceOf(plan->second->setup);
  }

  std::unordered_map<LedgerOrderKey, const LedgerEntryPlan*, HashOfKey> plans_;
  Played played_;
  Names symbols_{played_.symbols};
  Names setups_{played_.setups};
};

}  // namespace

Played PlayedOf(const std::vector<PlayedScope>& scopes, const std::vector<LedgerEntryPlan>& plans) {
  std::size_t trades = 0;
  for (const PlayedScope& scope : scopes) trades += scope.trades.trades.size();
  Gathering gathering(plans, trades);
  for (const PlayedScope& scope : scopes) gathering.Add(scope);
  return gathering.Take();
}

}  // namespace velumar
