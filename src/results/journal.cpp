#include "results/journal.h"

#include <algorithm>
#include <filesystem>
#include <map>
#include <set>
#include <system_error>
#include <utility>

#include "base/paths.h"
#include "base/text.h"
#include "results/result_choices.h"
#include "results/run_record.h"

namespace velumar {

namespace {

// The pictures next to a ledger, listed once.
class PictureFiles {
 public:
  explicit PictureFiles(const LedgerConnection& connection) : connection_(connection) {
    const std::string any = LedgerPictureFile(connection, {1, 1});
    if (any.empty()) return;
    std::error_code none;
    for (std::filesystem::directory_iterator file(NativePath(any).parent_path(), none), end;
         file != end; file.increment(none)) {
      names_.insert(PathText(file->path().filename()));
      if (none) break;
    }
  }

  std::string Of(const LedgerOrderKey& order) const {
    const std::string file = LedgerPictureFile(connection_, order);
    return names_.contains(PathText(NativePath(file).filename())) ? file : std::string();
  }

 private:
  const LedgerConnection& connection_;
  std::set<std::string> names_;
};

using NotesOfOrders = std::map<LedgerOrderKey, std::vector<LedgerNote>>;
using OrdersByKey = std::map<LedgerOrderKey, const RunOrder*>;

OrdersByKey ByKey(const std::vector<RunRecord>& account) {
  OrdersByKey orders;
  for (const RunRecord& record : account) {
    for (const RunOrder& order : record.orders) {
      if (order.key.place != 0) orders.emplace(order.key, &order);
    }
  }
  return orders;
}

// Fills in what surrounds a trade.
class EntryMaker {
 public:
  EntryMaker(const PictureFiles& pictures, const NotesOfOrders& notes,
             const std::vector<RunRecord>& account)
      : pictures_(pictures), notes_(notes), orders_(ByKey(account)) {
    const RunRecord& record = account.back();
    if (record.began) {
      symbol_ = record.began->symbol;
      interval_ = record.began->interval;
    } else if (!record.orders.empty()) {
      symbol_ = record.orders.front().symbol;
    }
  }

  JournalEntry Make(Trade trade, bool open) const {
    JournalEntry entry;
    entry.symbol = symbol_;
    entry.interval = interval_;
    entry.trade = std::move(trade);
    entry.open = open;
    if (entry.trade.lot.entry) {
      const LedgerOrderKey& key = entry.trade.lot.entry->key;
      entry.entry_picture = pictures_.Of(key);
      if (const RunOrder* const order = OrderOf(key)) {
        entry.plan = order->plan;
        entry.look_ahead = order->LookAhead().value_or(false);
      }
    }
    if (!open) {
      const LedgerOrderKey& key = entry.trade.exit.key;
      entry.exit_picture = pictures_.Of(key);
      const RunOrder* const order = OrderOf(key);
      entry.look_ahead |= order != nullptr && order->LookAhead().value_or(false);
    }
    const auto notes = notes_.find(entry.NoteKey());
    if (notes != notes_.end()) entry.notes = notes->second;
    return entry;
  }

 private:
  const RunOrder* OrderOf(const LedgerOrderKey& key) const {
    const auto found = orders_.find(key);
    return found == orders_.end() ? nullptr : found->second;
  }

  const PictureFiles& pictures_;
  const NotesOfOrders& notes_;
  OrdersByKey orders_;
  std::string symbol_;
  std::string interval_;
};

std::string TitleOf(const LedgerConnection& connection, const RunRecord& record) {
  if (!record.began) return "Orders of an earlier version";
  const LedgerRun& began = *record.began;
  const std::string start = StartDayText(connection, began.start_date);
  const std::string bars = began.interval == "D" ? "daily bars" : began.interval + "-minute bars";
  return began.symbol + ", " + bars + (start.empty() ? start : ", from " + start);
}

int SessionOf(LedgerConnection& connection, LedgerScope scope) {
  if (scope.kind == LedgerScope::Kind::kRun) {
    scope = ScopeOfRun(connection, NewestRun(connection, scope));
  }
  return scope.kind == LedgerScope::Kind::kSession ? scope.number : 0;
}

// Reads journals of one ledger. Its notes and pictures are read once for all of them.
class JournalReader {
 public:
  explicit JournalReader(LedgerConnection& connection)
      : connection_(connection), pictures_(connection) {
    for (LedgerNote& note : LedgerNotes(connection)) {
      std::vector<LedgerNote>& notes =
          note.order.place != 0 ? of_orders_[note.order] : of_sessions_[note.session];
      notes.push_back(std::move(note));
    }
  }

  Journal Read(LedgerScope scope, int session) const {
    const std::vector<RunRecord> account = ReadAccount(connection_, scope);
    Journal journal{.scope = scope,
                    .session = session,
                    .title = TitleOf(connection_, account.back()),
                    .notes = {},
                    .trades = {}};
    const auto notes = of_sessions_.find(session);
    if (session != 0 && notes != of_sessions_.end()) journal.notes = notes->second;
    const EntryMaker maker(pictures_, of_orders_, account);
    TradeList list = ListTrades(account);
    for (Trade& trade : list.trades) journal.trades.push_back(maker.Make(std::move(trade), false));
    for (OpenLot& lot : list.open) {
      journal.trades.push_back(maker.Make(Trade{.lot = std::move(lot), .exit = {}}, true));
    }
    return journal;
  }

 private:
  LedgerConnection& connection_;
  PictureFiles pictures_;
  NotesOfOrders of_orders_;
  std::map<int, std::vector<LedgerNote>> of_sessions_;
};

bool Contains(const std::string& text, const std::string& wanted_upper) {
  return UpperCased(text).find(wanted_upper) != std::string::npos;
}

}  // namespace

Outcome JournalEntry::Result() const {
  if (open) return Outcome::kOpen;
  const double result = trade.money.value_or(trade.points.value_or(0));
  return result > 0 ? Outcome::kWon : result < 0 ? Outcome::kLost : Outcome::kEven;
}

LedgerOrderKey JournalEntry::NoteKey() const {
  return trade.lot.entry ? trade.lot.entry->key : trade.exit.key;
}

Journal ReadJournal(LedgerConnection& connection, LedgerScope scope) {
  return JournalReader(connection).Read(scope, SessionOf(connection, scope));
}

std::vector<Journal> ReadJournals(LedgerConnection& connection) {
  const JournalReader reader(connection);
  std::vector<Journal> journals;
  for (const ResultChoice& choice : ResultChoices(connection)) {
    const bool run = choice.scope.kind == LedgerScope::Kind::kRun;
    const int session = SessionOf(connection, choice.scope);
    if (run && session != 0) continue;
    Journal journal = reader.Read(choice.scope, session);
    if (!journal.trades.empty() || !journal.notes.empty()) journals.push_back(std::move(journal));
  }
  return journals;
}

std::vector<Journal> ReadJournals(LedgerConnection& connection,
                                  const std::vector<LedgerScope>& scopes) {
  const JournalReader reader(connection);
  std::vector<Journal> journals;
  journals.reserve(scopes.size());
  for (const LedgerScope scope : scopes) {
    journals.push_back(reader.Read(scope, SessionOf(connection, scope)));
  }
  return journals;
}

bool Passes(const JournalEntry& entry, const JournalFilter& filter) {
  const LedgerPlan none;
  const LedgerPlan& plan = entry.plan ? *entry.plan : none;
  if (filter.setup && plan.setup != *filter.setup) return false;
  if (filter.is_long && entry.trade.lot.is_long != *filter.is_long) return false;
  if (filter.outcome && entry.Result() != *filter.outcome) return false;
  if (filter.text.empty()) return true;
  const std::string wanted = UpperCased(filter.text);
  const std::string entered = entry.trade.lot.entry ? entry.trade.lot.entry->date : "";
  const std::string texts[] = {entry.symbol, entered,      entry.trade.exit.date,
                               plan.setup,   plan.reasons, entry.Note()};
  return std::ranges::any_of(texts,
                             [&](const std::string& text) { return Contains(text, wanted); });
}

std::vector<std::string> SetupsOf(const std::vector<JournalEntry>& entries) {
  std::set<std::string> setups;
  for (const JournalEntry& entry : entries) {
    if (entry.plan && !entry.plan->setup.empty()) setups.insert(entry.plan->setup);
  }
  return {setups.begin(), setups.end()};
}

std::string NoteDate(const LedgerConnection& connection, const std::vector<LedgerNote>& notes) {
  constexpr std::size_t kDate = 10;
  constexpr std::size_t kMinutes = 16;
  if (notes.empty()) return {};
  const std::string& written = notes.back().written;
  if (written.size() < kMinutes) return written;
  return connection.DateText(written.substr(0, kDate)) + written.substr(kDate, kMinutes - kDate) +
         " UTC" + (notes.size() > 1 ? ", changed" : "");
}

}  // namespace velumar
