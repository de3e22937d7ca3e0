#include "progress/coach_trades.h"

#include <algorithm>
#include <map>
#include <optional>
#include <utility>

#include "progress/filter_text.h"
#include "progress/result_unit.h"
#include "results/figure_texts.h"
#include "results/journal_list.h"

namespace velumar {

namespace {

constexpr std::size_t kMostListed = 5;
constexpr std::size_t kLongestText = 3000;  // of a note or reasons, in bytes

struct Ranked {
  std::int32_t place = 0;
  double result = 0;
};

// What R compares is before costs, as everywhere.
std::optional<double> ResultOf(const ResultUnit& unit, const PlayedTrade& trade) {
  return unit.in_r ? trade.R() : trade.Net();
}

std::vector<Ranked> RankedTrades(const Played& played, const Selection& selection,
                                 const ResultUnit& unit) {
  std::vector<Ranked> ranked;
  for (const std::int32_t place : selection) {
    if (const auto result = ResultOf(unit, played.TradeAt(place))) {
      ranked.push_back({place, *result});
    }
  }
  return ranked;
}

// The first ones by that order of results; of equal ones the first played.
template <typename Order>
std::vector<std::int32_t> First(std::vector<Ranked> ranked, Order order) {
  std::erase_if(ranked, [&](const Ranked& trade) { return !order(trade.result, 0.0); });
  const auto end = ranked.begin() + std::ptrdiff_t(std::min(kMostListed, ranked.size()));
  std::partial_sort(ranked.begin(), end, ranked.end(), [&](const Ranked& a, const Ranked& b) {
    return a.result != b.result ? order(a.result, b.result) : a.place < b.place;
  });
  std::vector<std::int32_t> places;
  std::transform(ranked.begin(), end, std::back_inserter(places),
                 [](const Ranked& trade) { return trade.place; });
  return places;
}

// The trades of the ledger by their place in Played::trades.
std::vector<const LedgerTrade*> TradesWithPlace(const std::vector<PlayedScope>& scopes) {
  std::vector<const LedgerTrade*> trades;
  for (const PlayedScope& scope : scopes) {
    for (const LedgerTrade& trade : scope.trades.trades) {
      if (trade.money) trades.push_back(&trade);
    }
  }
  return trades;
}

// The whole characters (UTF-8) of the beginning of a long text.
std::string Shortened(const std::string& text) {
  if (text.size() <= kLongestText) return text;
  std::size_t end = kLongestText;
  while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0U) == 0x80U) --end;
  return text.substr(0, end) + " ... (the rest is in the journal)";
}

std::string ScopeText(const PlayedSession& session) {
  return (session.scope.kind == LedgerScope::Kind::kSession ? "session " : "run ") +
         std::to_string(session.scope.number);
}

std::string ResultText(const PlayedTrade& trade) {
  std::string text = "Result: ";
  if (const auto r = trade.R()) text += MoneyText(r) + " R, ";
  text += MoneyText(trade.money);
  if (trade.costs != 0) text += ", " + MoneyText(trade.Net()) + " after costs";
  return text;
}

std::string HoldingText(const PlayedTrade& trade) {
  if (trade.entry_bar == kAbsent || trade.exit_bar < trade.entry_bar) return {};
  const int bars = trade.exit_bar - trade.entry_bar;
  return "Held " + std::to_string(bars) + (bars == 1 ? " bar" : " bars");
}

std::string ExcursionText(const PlayedTrade& trade) {
  if (!trade.adverse || !trade.favourable) return {};
  const auto text = [&](double points) {
    const double money = points * trade.quantity * trade.money_per_point;
    if (trade.risk <= 0) return MoneyText(money);
    return MoneyText(money / trade.risk) + " R (" + MoneyText(money) + ")";
  };
  return "The price went at most " + text(*trade.adverse) + " against it and " +
         text(*trade.favourable) + " for it";
}

// Makes the trades of a report. The journals of their sessions are read once.
class TradeWriter {
 public:
  TradeWriter(LedgerConnection& connection, const CoachSource& source,
              const std::vector<std::int32_t>& places)
      : connection_(connection), played_(source.played) {
    std::vector<LedgerScope> scopes;
    scopes.reserve(places.size());
    for (const std::int32_t place : places) {
      scopes.push_back(played_.SessionAt(played_.TradeAt(place).session).scope);
    }
    std::ranges::sort(scopes);
    scopes.erase(std::unique(scopes.begin(), scopes.end()), scopes.end());
    journals_ = ReadJournals(connection, scopes);
    for (const Journal& journal : journals_) {
      for (const JournalEntry& entry : journal.trades) {
        if (entry.open || !entry.trade.lot.entry) continue;
        entries_.emplace(std::pair(entry.trade.lot.entry->key, entry.trade.exit.key), &entry);
      }
    }
  }

  CoachTrade Write(std::int32_t place, const LedgerTrade& kept) const {
    const PlayedTrade& trade = played_.TradeAt(place);
    const PlayedSession& session = played_.SessionAt(trade.session);
    const auto entry = entries_.find({kept.entry.order, kept.exit.order});
    CoachTrade written;
    written.title = entry == entries_.end() ? std::string(trade.is_long ? "Long" : "Short")
                                            : TradeText(*entry->second);
    const auto add = [&written](const std::string& line) {
      if (!line.empty()) written.lines.push_back(line);
    };
    const std::string bars =
        session.interval == kAbsent ? "daily bars" : IntervalLabel(session.interval);
    add(played_.symbols.at(static_cast<std::size_t>(session.symbol)) + ", " + bars + ", " +
        ScopeText(session) + (session.blind ? ", played blind" : "") +
        (trade.look_ahead ? ", look-ahead" : ""));
    add(ResultText(trade));
    const std::string holding = HoldingText(trade);
    const std::string excursion = ExcursionText(trade);
    add(holding + (holding.empty() || excursion.empty() ? "" : ". ") + excursion);
    if (entry != entries_.end()) AddJournal(*entry->second, written);
    return written;
  }

 private:
  void AddJournal(const JournalEntry& entry, CoachTrade& written) const {
    const std::string plan = PlanText(entry);
    written.lines.push_back(plan.empty() ? "No plan" : plan);
    if (entry.plan && !entry.plan->reasons.empty()) {
      written.lines.push_back("Reasons: " + Shortened(entry.plan->reasons));
    }
    if (!entry.Note().empty()) {
      written.lines.push_back("Note: " + Shortened(entry.Note()));
      written.lines.push_back(NoteDate(connection_, entry.notes));
    }
    written.entry_picture = entry.entry_picture;
    written.exit_picture = entry.exit_picture;
  }

  LedgerConnection& connection_;
  const Played& played_;
  std::vector<Journal> journals_;
  std::map<std::pair<LedgerOrderKey, LedgerOrderKey>, const JournalEntry*> entries_;
};

}  // namespace

std::vector<CoachTrades> BestAndWorst(LedgerConnection& connection, const CoachSource& source,
                                      const Selection& selection) {
  const ResultUnit unit(source.played, selection);
  const std::vector<Ranked> ranked = RankedTrades(source.played, selection, unit);
  const std::vector<std::int32_t> best = First(ranked, std::greater<>());
  const std::vector<std::int32_t> worst = First(ranked, std::less<>());
  std::vector<std::int32_t> all = best;
  all.insert(all.end(), worst.begin(), worst.end());
  const TradeWriter writer(connection, source, all);
  const std::vector<const LedgerTrade*> kept = TradesWithPlace(source.scopes);
  const auto listed = [&](const std::string& title, const std::vector<std::int32_t>& places) {
    CoachTrades list{.title = title, .note = {}, .trades = {}};
    list.note = unit.in_r ? "By R. Trades without a planned stop have none, and are not listed."
                          : "By money after costs.";
    for (const std::int32_t place : places) {
      list.trades.push_back(writer.Write(place, *kept.at(static_cast<std::size_t>(place))));
      std::string& heading = list.trades.back().title;
      heading = std::to_string(list.trades.size()) + ". " + heading;
    }
    return list;
  };
  std::vector<CoachTrades> lists;
  if (!best.empty()) lists.push_back(listed("The best trades", best));
  if (!worst.empty()) lists.push_back(listed("The worst trades", worst));
  return lists;
}

}  // namespace velumar
