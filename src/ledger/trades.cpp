#include "ledger/trades.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <map>
#include <span>
#include <utility>

namespace velumar {

namespace {

// A scope in the tables: the number of a session and no run, or the other way round.
std::pair<double, double> KeyOf(LedgerScope scope) {
  const bool session = scope.kind == LedgerScope::Kind::kSession;
  return {session ? scope.number : 0, session ? 0 : scope.number};
}

constexpr double kMostTrades = 1 << 30;  // of a scope

// The keys of its trades, in the order in which they were closed.
std::pair<double, double> RowsOf(LedgerScope scope) {
  const double place = scope.number * 2.0 + (scope.kind == LedgerScope::Kind::kSession ? 0 : 1);
  return {place * kMostTrades, (place + 1) * kMostTrades - 1};
}

LedgerScope ScopeOf(int session, int run) {
  return session != 0 ? LedgerScope::Session(session) : LedgerScope::Run(run);
}

// A damaged ledger may hold any number. What no trade can have is as good as missing.
std::optional<double> FiniteNumber(const SqliteStatement& row, int column) {
  const auto number = row.Number(column);
  return number && std::isfinite(*number) ? number : std::nullopt;
}

std::optional<int> BarOf(const SqliteStatement& row, int column) {
  constexpr int kMostBars = 1'000'000'000;
  const auto number = row.Number(column);
  return number && *number >= 0 && *number < kMostBars ? std::optional(row.Whole(column))
                                                       : std::nullopt;
}

// The closes as they are in memory: all systems of Velumar store the lowest byte first. None if
// they are damaged.
std::vector<float> ClosesOf(std::span<const std::byte> bytes) {
  std::vector<float> closes(bytes.size() / sizeof(float));
  if (!closes.empty()) std::memcpy(closes.data(), bytes.data(), closes.size() * sizeof(float));
  if (!std::ranges::all_of(closes, [](float close) { return std::isfinite(close); })) return {};
  return closes;
}

// Runs with the session that they belong to, if that is listed, and how many orders and wiped-out
// holdings each has.
std::string SelectRuns(const SqliteDatabase& database) {
  const bool sessions = database.HasTable("SessionMoments");
  return "SELECT R.Id, " +
         std::string(sessions ? "coalesce(S.Id, 0), coalesce(S.Mask, ''), coalesce(M.NewestShown, "
                                "0), coalesce(M.Touched, '')"
                              : "0, '', 0, ''") +
         ", R.Directory, R.Symbol, R.SymbolInterval, R.StartDate, R.StartTime, R.Market, "
         "R.StartingMoney, R.Margin, R.MoneyPerPoint, O.Orders, O.Newest FROM Runs AS R JOIN "
         "(SELECT Run, count(*) AS Orders, max(NewestShown) AS Newest FROM (SELECT Run, "
         "NewestShown "
         "FROM Details UNION ALL SELECT Run, NewestShown FROM Wiped) GROUP BY Run) AS O ON O.Run = "
         "R.Id" +
         (sessions ? " LEFT JOIN Sessions AS S ON S.Id = R.Session LEFT JOIN SessionMoments AS M "
                     "ON M.Session = S.Id"
                   : "") +
         " ORDER BY R.Id";
}

LedgerScopeState StateOf(const SqliteStatement& row) {
  const auto text = [&row](int column) { return std::string(row.Text(column)); };
  const auto number = [&row](int column) { return row.Number(column).value_or(0); };
  return {.scope = ScopeOf(row.Whole(1), row.Whole(0)),
          .orders = 0,
          .newest_shown = row.Whole(3),
          .began = {.directory = text(5),
                    .symbol = text(6),
                    .interval = text(7),
                    .start_date = text(8),
                    .start_time = text(9),
                    .market = text(10),
                    .starting_money = number(11),
                    .margin = number(12),
                    .money_per_point = number(13)},
          .blind = !row.Text(2).empty(),
          .touched = text(4)};
}

// What is kept of each scope: its orders and its newest bar. Those without bars are computed again,
// since the data may be there again.
std::map<LedgerScope, std::pair<int, int>> KeptStates(const SqliteDatabase& database) {
  std::map<LedgerScope, std::pair<int, int>> kept;
  if (!database.HasTable("PlayedBars")) return kept;
  SqliteStatement select = database.Prepare(
      "SELECT Session, Run, Orders, NewestShown FROM PlayedBars WHERE length(Closes) > 0");
  while (select.Step()) {
    kept[ScopeOf(select.Whole(0), select.Whole(1))] = {select.Whole(2), select.Whole(3)};
  }
  return kept;
}

constexpr const char* kTradeColumns =
    "Session, Run, EntryRun, EntryPlace, EntryDay, EntryTime, EntryBar, EntryPrice, ExitRun, "
    "ExitPlace, ExitDay, ExitTime, ExitBar, ExitPrice, Side, Quantity, EntryShare, Wiped, "
    "LookAhead, MoneyPerPoint, Money, Costs, Adverse, AdverseBar, Favourable, FavourableBar";

// The six columns of an end, from `first` on.
LedgerTradeEnd EndOf(const SqliteStatement& row, int first) {
  return {.order = {row.Whole(first), row.Whole(first + 1)},
          .day = row.Whole(first + 2),
          .time = row.Whole(first + 3),
          .bar = BarOf(row, first + 4),
          .price = FiniteNumber(row, first + 5).value_or(0)};
}

LedgerTrade TradeOf(const SqliteStatement& row) {
  const auto number = [&row](int column) { return FiniteNumber(row, column).value_or(0); };
  return {.entry = EndOf(row, 2),
          .exit = EndOf(row, 8),
          .is_long = row.Text(14) == "Long",
          .quantity = number(15),
          .entry_share = number(16),
          .wiped = row.Whole(17) != 0,
          .look_ahead = row.Whole(18) != 0,
          .money_per_point = FiniteNumber(row, 19),
          .money = FiniteNumber(row, 20),
          .costs = number(21),
          .adverse = FiniteNumber(row, 22),
          .favourable = FiniteNumber(row, 24),
          .adverse_bar = BarOf(row, 23).value_or(0),
          .favourable_bar = BarOf(row, 25).value_or(0)};
}

void AddEnd(std::vector<LedgerValue>& values, const LedgerTradeEnd& end) {
  for (const LedgerValue& value :
       {LedgerValue(double(end.order.run)), LedgerValue(double(end.order.place)),
        LedgerValue(double(end.day)), LedgerValue(double(end.time)), OrNull(end.bar),
        LedgerValue(end.price)}) {
    values.push_back(value);
  }
}

void Insert(SqliteDatabase& database, LedgerScope scope, const LedgerTrade& trade) {
  static const std::string kInsert = [] {
    const std::string columns = kTradeColumns;
    std::string places = "?3, ?4";
    for (auto i = std::ranges::count(columns, ','); i > 1; --i) places += ", ?";
    return "INSERT INTO Trades (Key, " + columns +
           ") VALUES (coalesce((SELECT max(Key) FROM Trades WHERE Key BETWEEN ?1 AND ?2), ?1) "
           "+ 1, " +
           places + ")";
  }();
  const auto bar_of = [](const std::optional<double>& excursion, int bar) {
    return excursion ? LedgerValue(double(bar)) : LedgerValue();
  };
  const auto [session, run] = KeyOf(scope);
  const auto [first, last] = RowsOf(scope);
  std::vector<LedgerValue> values{first, last, session, run};
  AddEnd(values, trade.entry);
  AddEnd(values, trade.exit);
  for (const LedgerValue& value :
       {LedgerValue(trade.is_long ? "Long" : "Short"), LedgerValue(trade.quantity),
        LedgerValue(trade.entry_share), LedgerValue(double(trade.wiped)),
        LedgerValue(double(trade.look_ahead)), OrNull(trade.money_per_point), OrNull(trade.money),
        LedgerValue(trade.costs), OrNull(trade.adverse), bar_of(trade.adverse, trade.adverse_bar),
        OrNull(trade.favourable), bar_of(trade.favourable, trade.favourable_bar)}) {
    values.push_back(value);
  }
  database.Run(kInsert, values);
}

void Drop(SqliteDatabase& database, LedgerScope scope) {
  const auto [session, run] = KeyOf(scope);
  const auto [first, last] = RowsOf(scope);
  database.Run("DELETE FROM Trades WHERE Key BETWEEN ? AND ?", {first, last});
  database.Run("DELETE FROM PlayedBars WHERE Session = ? AND Run = ?", {session, run});
}

}  // namespace

std::vector<LedgerScopeState> LedgerScopes(LedgerConnection& connection) {
  const SqliteDatabase& database = connection.ForReading();
  const auto kept = KeptStates(database);
  std::vector<LedgerScopeState> states;
  std::map<LedgerScope, std::size_t> places;
  SqliteStatement select = database.Prepare(SelectRuns(database));
  while (select.Step()) {
    LedgerScopeState state = StateOf(select);
    const auto [place, is_new] = places.try_emplace(state.scope, states.size());
    if (is_new) states.push_back(std::move(state));
    LedgerScopeState& known = states[place->second];
    known.orders += select.Whole(14);
    known.newest_shown = std::max(known.newest_shown, select.Whole(15));
  }
  for (LedgerScopeState& state : states) {
    const auto found = kept.find(state.scope);
    state.up_to_date =
        found != kept.end() && found->second == std::pair(state.orders, state.newest_shown);
  }
  return states;
}

std::vector<LedgerTrades> LedgerReadTrades(LedgerConnection& connection) {
  const SqliteDatabase& database = connection.ForReading();
  std::vector<LedgerTrades> all;
  if (!database.HasTable("PlayedBars")) return all;
  std::map<LedgerScope, std::size_t> places;
  SqliteStatement bars = database.Prepare(
      "SELECT Session, Run, Orders, NewestShown, FirstBar, FirstDay, LastDay, Closes FROM "
      "PlayedBars");
  while (bars.Step()) {
    const LedgerScope scope = ScopeOf(bars.Whole(0), bars.Whole(1));
    places.emplace(scope, all.size());
    all.push_back({.scope = scope,
                   .orders = bars.Whole(2),
                   .newest_shown = bars.Whole(3),
                   .first_bar = BarOf(bars, 4).value_or(0),
                   .first_day = bars.Whole(5),
                   .last_day = bars.Whole(6),
                   .closes = ClosesOf(bars.Bytes(7)),
                   .trades = {}});
  }
  SqliteStatement trades =
      database.Prepare(std::string("SELECT ") + kTradeColumns + " FROM Trades ORDER BY Key");
  std::vector<LedgerTrade> of_scope;
  LedgerScope scope = kCurrentRun;
  const auto add = [&] {
    if (of_scope.empty()) return;
    const auto [place, is_new] = places.try_emplace(scope, all.size());
    if (is_new) all.push_back({.scope = scope, .closes = {}, .trades = {}});
    std::vector<LedgerTrade>& trades_of = all[place->second].trades;
    trades_of.insert(trades_of.end(), of_scope.begin(), of_scope.end());
    of_scope.clear();
  };
  while (trades.Step()) {
    const LedgerScope next = ScopeOf(trades.Whole(0), trades.Whole(1));
    if (next != scope) add();
    scope = next;
    of_scope.push_back(TradeOf(trades));
  }
  add();
  return all;
}

void LedgerWriteTrades(LedgerConnection& connection, const LedgerTrades& trades) {
  SqliteDatabase& database = connection.ForWriting();
  SqliteTransaction transaction(database);
  Drop(database, trades.scope);
  const auto [session, run] = KeyOf(trades.scope);
  SqliteStatement bars = database.Prepare(
      "INSERT INTO PlayedBars (Session, Run, Orders, NewestShown, FirstBar, FirstDay, LastDay, "
      "Closes) VALUES (?, ?, ?, ?, ?, ?, ?, ?)");
  const LedgerValue values[] = {session,
                                run,
                                double(trades.orders),
                                double(trades.newest_shown),
                                double(trades.first_bar),
                                double(trades.first_day),
                                double(trades.last_day)};
  bars.Bind(values);
  bars.BindBytes(8, std::as_bytes(std::span(trades.closes)));
  bars.Step();
  for (const LedgerTrade& trade : trades.trades) Insert(database, trades.scope, trade);
  bars.Reset();
  transaction.Commit();
}

void LedgerAddTrades(SqliteDatabase& database, int session, const LedgerOrderKey& exit,
                     std::span<const LedgerTrade> closed) {
  for (LedgerTrade trade : closed) {
    trade.exit.order = exit;
    Insert(database, LedgerScope::Session(session), trade);
  }
}

void LedgerDropTrades(SqliteDatabase& database, int session) {
  Drop(database, LedgerScope::Session(session));
}

std::vector<LedgerEntryPlan> LedgerEntryPlans(LedgerConnection& connection) {
  const SqliteDatabase& database = connection.ForReading();
  std::vector<LedgerEntryPlan> plans;
  if (!database.HasTable("Plans")) return plans;
  SqliteStatement select = database.Prepare(
      "SELECT Run, Place, Setup, Confidence, Risk FROM Plans WHERE Place > 0 ORDER BY Id");
  while (select.Step()) {
    plans.push_back({{select.Whole(0), select.Whole(1)},
                     std::string(select.Text(2)),
                     select.Whole(3),
                     select.Number(4).value_or(0)});
  }
  return plans;
}

}  // namespace velumar
