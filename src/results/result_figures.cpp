#include "results/result_figures.h"

#include <variant>

#include "base/number_text.h"

namespace velumar {

namespace {

constexpr std::string_view kPortfolioPattern = "###,###,###,###";

using Row = std::vector<LedgerValue>;

bool IsNull(const LedgerValue& value) { return std::holds_alternative<std::monostate>(value); }

float Single(const LedgerValue& value) {
  if (const auto* number = std::get_if<double>(&value)) return static_cast<float>(*number);
  if (const auto* text = std::get_if<std::string>(&value)) return ToSingle(*text).value_or(0);
  return 0;
}

std::string Text(const LedgerValue& value) {
  if (const auto* text = std::get_if<std::string>(&value)) return *text;
  return IsNull(value) ? std::string() : PlainNumberText(Single(value));
}

// The first row of a select; empty where there is none.
Row FirstRow(LedgerConnection& connection, std::string_view select) {
  LedgerRecordset records = LedgerQuery(connection, select);
  return records.Empty() ? Row() : std::move(records.rows.front());
}

void LoadSeries(LedgerConnection& connection, ResultFigures& figures) {
  const Row row = FirstRow(connection, "select symbol , SymbolInterval From MyPortfolio");
  if (row.empty()) return;
  figures.ResSymbol = Text(row[0]);
  figures.ResInterval = Text(row[1]);
}

void LoadStart(LedgerConnection& connection, ResultFigures& figures) {
  const Row row = FirstRow(
      connection, "select actdate, acttime From MyPortfolio order by actdate asc, acttime asc ");
  if (row.empty()) return;
  figures.ResStartDate = Text(row[0]);
  figures.ResStartTime = Text(row[1]);
}

void LoadEnd(LedgerConnection& connection, ResultFigures& figures) {
  const Row row = FirstRow(connection,
                           "select actdate, acttime, Portfolio From MyPortfolio order by actdate "
                           "desc, acttime desc ");
  if (row.empty()) return;
  figures.ResEndDate = Text(row[0]);
  figures.ResEndTime = Text(row[1]);
  figures.ResPortfolio = Single(row[2]);
}

void LoadSums(LedgerConnection& connection, ResultFigures& figures) {
  const Row row = FirstRow(
      connection,
      "select sum(LAmount), sum(SAmount), sum(LRealised), sum(SRealised) From MyPortfolio");
  if (row.empty() || IsNull(row[0])) return;
  figures.ResLongAmount = Single(row[0]);
  figures.ResShortAmount = Single(row[1]);
  figures.ResLongProfitLoss = Single(row[2]);
  figures.ResShortProfitLoss = Single(row[3]);
}

void LoadCommission(LedgerConnection& connection, std::string_view select, float& commission) {
  const Row row = FirstRow(connection, select);
  if (!row.empty() && !IsNull(row[0])) commission = Single(row[0]);
}

}  // namespace

void LoadResultFigures(LedgerConnection& connection, ResultFigures& figures) {
  ResultFigures loaded = figures;
  LoadSeries(connection, loaded);
  LoadStart(connection, loaded);
  LoadEnd(connection, loaded);
  LoadSums(connection, loaded);
  LoadCommission(connection, "select sum(Commission) From MyPortfolio where LAmount > 0 ",
                 loaded.ResLongComm);
  LoadCommission(connection, "select sum(Commission) From MyPortfolio where SAmount > 0 ",
                 loaded.ResShortComm);
  loaded.ResTotalComm =
      static_cast<float>(static_cast<double>(loaded.ResLongComm) + loaded.ResShortComm);
  figures = std::move(loaded);
}

std::array<ResultFigureText, 14> ResultFigureTexts(const ResultFigures& figures) {
  return {{
      {"ResSymbol", "lblSymbol", figures.ResSymbol},
      {"ResInterval", "lblInterval", figures.ResInterval},
      {"ResStartDate", "lblStartDate", figures.ResStartDate},
      {"ResStartTime", "lblStartDateTime", figures.ResStartTime},
      {"ResEndDate", "lblEndDate", figures.ResEndDate},
      {"ResEndTime", "lblEndDateTime", figures.ResEndTime},
      {"ResPortfolio", "lblPortfolio", PatternText(figures.ResPortfolio, kPortfolioPattern)},
      {"ResLongAmount", "lblLong", PlainNumberText(figures.ResLongAmount)},
      {"ResShortAmount", "lblShort", PlainNumberText(figures.ResShortAmount)},
      {"ResLongProfitLoss", "lblLongProfitLoss", PlainNumberText(figures.ResLongProfitLoss)},
      {"ResShortProfitLoss", "lblShortProfitLoss", PlainNumberText(figures.ResShortProfitLoss)},
      {"ResLongComm", "lblLongComm", PlainNumberText(figures.ResLongComm)},
      {"ResShortComm", "lblShortComm", PlainNumberText(figures.ResShortComm)},
      {"ResTotalComm", "lblTotalComm", PlainNumberText(figures.ResTotalComm)},
  }};
}

}  // namespace velumar
