#include "trading/account.h"

#include "base/decimal.h"
#include "base/number_text.h"

namespace velumar {

namespace {

// The type that a figure is stored in.
enum class Width : std::uint8_t { kSingle, kInt16 };

struct Field {
  std::string_view caption;
  Width width;
};

constexpr Field kQuantity{"Vol/Contract", Width::kSingle};

Field FieldOf(AccountFigure figure, bool stock) {
  switch (figure) {
    case AccountFigure::kCommission:
      return {"Comm.", stock ? Width::kSingle : Width::kInt16};
    case AccountFigure::kStartingMoney:
      return {"Portfolio", Width::kSingle};
    case AccountFigure::kVat:
      return {"VAT", Width::kInt16};
    case AccountFigure::kMargin:
      return {"Initial Margin", Width::kSingle};
    default:
      return {"Profit/Contract", Width::kSingle};
  }
}

// A text that would be a number without its commas.
bool MisplacesCommas(std::string_view text) {
  std::string without(text);
  return std::erase(without, ',') > 0 && Decimal::FromText(without).has_value();
}

std::optional<std::string> Problem(const Field& field, std::string_view text) {
  const std::string quoted = std::string(field.caption) + ": \"" + std::string(text) + "\" ";
  const std::optional<Decimal> number = Decimal::FromText(text);
  if (!number && MisplacesCommas(text)) {
    return quoted + "is unclear: commas group thousands, a point starts the decimals";
  }
  if (!number) return quoted + "is not a number";
  if (number->Negative() && !number->IsZero()) return quoted + "is negative";
  const bool fits =
      field.width == Width::kInt16 ? ToInt16(text).has_value() : ToSingle(text).has_value();
  return fits ? std::nullopt : std::optional(quoted + "is out of range");
}

// The number, or 0 and the first problem that was met.
double Usable(const Field& field, std::string_view text, std::string& problem) {
  if (const std::optional<std::string> why = Problem(field, text)) {
    if (problem.empty()) problem = *why;
    return 0;
  }
  return field.width == Width::kSingle ? ToSingle(text).value_or(0) : ToInt16(text).value_or(0);
}

void Read(AccountFigure figure, std::string_view text, float& field) {
  if (!FigureProblem(figure, text, false)) field = ToSingle(text).value_or(field);
}

}  // namespace

std::optional<std::string> FigureProblem(AccountFigure figure, std::string_view text, bool stock) {
  return Problem(FieldOf(figure, stock), text);
}

void ReadContract(SimSession& session, const RunInputs& inputs) {
  Read(AccountFigure::kMargin, inputs.Margin(), session.InitMargin);
  Read(AccountFigure::kProfitPerContract, inputs.ProfitPerContract(), session.ProfitPerContract);
}

void StartAccount(SimSession& session, const RunInputs& inputs) {
  ReadContract(session, inputs);
  Read(AccountFigure::kStartingMoney, inputs.StartingMoney(), session.Balance);
  session.Portfolio = session.Balance;
  session.UsedMargin = 0;
  session.LAccum = 0;
  session.SAccum = 0;
  session.LAvgPrice = 0;
  session.SAvgPrice = 0;
  session.Plans.CloseAll(true);
  session.Plans.CloseAll(false);
}

OrderFigures ReadOrderFigures(const RunInputs& inputs, bool stock, const std::string& quantity) {
  OrderFigures figures;
  std::string& problem = figures.problem;
  figures.quantity_single = static_cast<float>(Usable(kQuantity, quantity, problem));
  figures.quantity = ToDouble(quantity).value_or(0);
  figures.commission =
      Usable(FieldOf(AccountFigure::kCommission, stock), inputs.Commission(), problem);
  figures.vat = Usable(FieldOf(AccountFigure::kVat, stock), inputs.Vat(), problem);
  Usable(FieldOf(AccountFigure::kMargin, stock), inputs.Margin(), problem);
  return figures;
}

}  // namespace velumar
