#include "results/result_figures.h"

#include <variant>

#include "base/number_text.h"

namespace velumar {

namespace {

constexpr std::string_view kPortfolioPattern = "###,###,###,###";

using Row = std::vector<LedgerValue>;

// Returns the first row of a select on the current or an archived run; empty if there is none.
class FirstRows {
 public:
  FirstRows(LedgerConnection& connection, int archived_run)
      : connection_(connection), archived_run_(archived_run) {}

  Row Of(std::string_view select) const {
    LedgerRecordset records = LedgerQuery(connection_, select, archived_run_, 1);
    return records.Empty() ? Row() : std::move(records.rows.front());
  }

 private:
  LedgerConnection& connection_;
  int archived_run_;
};

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

void LoadSeries(const FirstRows& first, ResultFigures& figures) {
  const Row row = first.Of("select symbol , SymbolInterval From MyPortfolio");
  figures.any_orders = !row.empty();
  if (row.empty()) return;
  figures.ResSymbol = Text(row[0]);
  figures.ResInterval = Text(row[1]);
}

void LoadStart(const FirstRows& first, ResultFigures& figures) {
  const Row row =
      first.Of("select actdate, acttime From MyPortfolio order by actdate asc, acttime asc ");
  if (row.empty()) return;
  figures.ResStartDate = Text(row[0]);
  figures.ResStartTime = Text(row[1]);
}

void LoadEnd(const FirstRows& first, ResultFigures& figures) {
  const Row row = first.Of(
      "select actdate, acttime, Portfolio From MyPortfolio order by actdate "
      "desc, acttime desc ");
  if (row.empty()) return;
  figures.ResEndDate = Text(row[0]);
  figures.ResEndTime = Text(row[1]);
  figures.ResPortfolio = Single(row[2]);
}

void LoadSums(const FirstRows& first, ResultFigures& figures) {
  const Row row = first.Of(
      "select sum(LAmount), sum(SAmount), sum(LRealised), sum(SRealised) From MyPortfolio");
  if (row.empty() || IsNull(row[0])) return;
  figures.ResLongAmount = Single(row[0]);
  figures.ResShortAmount = Single(row[1]);
  figures.ResLongProfitLoss = Single(row[2]);
  figures.ResShortProfitLoss = Single(row[3]);
}

void LoadCommission(const FirstRows& first, std::string_view select, float& commission) {
  const Row row = first.Of(select);
  if (!row.empty() && !IsNull(row[0])) commission = Single(row[0]);
}

}  // namespace

ResultFigures LoadResultFigures(LedgerConnection& connection, int archived_run) {
  const FirstRows first(connection, archived_run);
  ResultFigures figures;
  LoadSeries(first, figures);
  LoadStart(first, figures);
  LoadEnd(first, figures);
  LoadSums(first, figures);
  LoadCommission(first, "select sum(Commission) From MyPortfolio where LAmount > 0 ",
                 figures.ResLongComm);
  LoadCommission(first, "select sum(Commission) From MyPortfolio where SAmount > 0 ",
                 figures.ResShortComm);
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
