#include "results/result_figures.h"

#include <utility>
#include <variant>

#include "base/number_text.h"

namespace velumar {

namespace {

constexpr std::string_view kPortfolioPattern = "###,###,###,###";

float Single(const LedgerValue& value) {
  if (const auto* text = std::get_if<std::string>(&value)) return ToSingle(*text).value_or(0);
  return static_cast<float>(ValueAs<double>(value));
}

std::string Text(const LedgerValue& value) {
  if (std::holds_alternative<double>(value)) return PlainNumberText(Single(value));
  return ValueAs<std::string>(value);
}

}  // namespace

ResultFigures LoadResultFigures(LedgerConnection& connection, LedgerScope scope) {
  // The first row of a select; one of nulls, which read as 0 and empty texts, if it has no rows.
  const auto first = [&](std::string_view select) {
    LedgerRecordset records = LedgerQuery(connection, select, scope, 1);
    if (records.Empty()) records.rows.emplace_back(records.columns.size());
    return std::move(records.rows.front());
  };
  ResultFigures figures;
  const LedgerRecordset series =
      LedgerQuery(connection, "select symbol , SymbolInterval From MyPortfolio", scope, 1);
  figures.any_orders = !series.Empty();
  if (figures.any_orders) {
    figures.ResSymbol = Text(series.rows.front()[0]);
    figures.ResInterval = Text(series.rows.front()[1]);
  }
  const auto start =
      first("select actdate, acttime From MyPortfolio order by actdate asc, acttime asc ");
  figures.ResStartDate = Text(start[0]);
  figures.ResStartTime = Text(start[1]);
  const auto end = first(
      "select actdate, acttime, Portfolio From MyPortfolio order by actdate "
      "desc, acttime desc ");
  figures.ResEndDate = Text(end[0]);
  figures.ResEndTime = Text(end[1]);
  figures.ResPortfolio = Single(end[2]);
  const auto sums =
      first("select sum(LAmount), sum(SAmount), sum(LRealised), sum(SRealised) From MyPortfolio");
  figures.ResLongAmount = Single(sums[0]);
  figures.ResShortAmount = Single(sums[1]);
  figures.ResLongProfitLoss = Single(sums[2]);
  figures.ResShortProfitLoss = Single(sums[3]);
  figures.ResLongComm =
      Single(first("select sum(Commission) From MyPortfolio where LAmount > 0 ")[0]);
  figures.ResShortComm =
      Single(first("select sum(Commission) From MyPortfolio where SAmount > 0 ")[0]);
  figures.ResTotalComm =
      static_cast<float>(static_cast<double>(figures.ResLongComm) + figures.ResShortComm);
  return figures;
}

std::array<ResultFigureText, 14> ResultFigureTexts(const ResultFigures& figures) {
  return {{
      {"ResSymbol", figures.ResSymbol},
      {"ResInterval", figures.ResInterval},
      {"ResStartDate", figures.ResStartDate},
      {"ResStartTime", figures.ResStartTime},
      {"ResEndDate", figures.ResEndDate},
      {"ResEndTime", figures.ResEndTime},
      {"ResPortfolio", PatternText(figures.ResPortfolio, kPortfolioPattern)},
      {"ResLongAmount", ReadableNumberText(figures.ResLongAmount)},
      {"ResShortAmount", ReadableNumberText(figures.ResShortAmount)},
      {"ResLongProfitLoss", ReadableNumberText(figures.ResLongProfitLoss)},
      {"ResShortProfitLoss", ReadableNumberText(figures.ResShortProfitLoss)},
      {"ResLongComm", ReadableNumberText(figures.ResLongComm)},
      {"ResShortComm", ReadableNumberText(figures.ResShortComm)},
      {"ResTotalComm", ReadableNumberText(figures.ResTotalComm)},
  }};
}

}  // namespace velumar
