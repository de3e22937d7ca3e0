#include "shell/account_boxes.h"

#include <array>

#include "base/number_text.h"
#include "trading/account.h"

namespace velumar {

namespace {

constexpr std::string_view kAccountPattern = "###,###,###,###";

// The defaults of a market whose name is in the path of the data directory.
struct MarketPreset {
  std::string_view word;
  std::string_view margin;
  std::string_view quantity;
  std::string_view profit;
  std::string_view commission;
};
constexpr std::array<MarketPreset, 3> kPresets{{{"SET", "100", "1,000", "1", "0.25"},
                                                {"AFET", "20,000", "1", "5,000", "500"},
                                                {"TFEX", "50,000", "1", "1,000", "450"}}};

// If the path names several markets, the last one of the table wins; null if it names none.
const MarketPreset* PresetOf(std::string_view data_dir) {
  const MarketPreset* last = nullptr;
  for (const MarketPreset& preset : kPresets) {
    if (data_dir.find(preset.word) != std::string_view::npos) last = &preset;
  }
  return last;
}

struct AccountBox {
  TextBox& box;
  AccountFigure figure;
};

// From the top of the window.
std::array<AccountBox, 5> BoxesOf(Form1& setup) {
  return {{{setup.txtcomm, AccountFigure::kCommission},
           {setup.txtInitPorfolio, AccountFigure::kStartingMoney},
           {setup.txtVAT, AccountFigure::kVat},
           {setup.txtContractValue, AccountFigure::kMargin},
           {setup.txtProfitperContract, AccountFigure::kProfitPerContract}}};
}

void Mark(const AccountBox& account, bool stock) {
  const auto problem = FigureProblem(account.figure, account.box.Text(), stock);
  account.box.SetForeColour(problem ? kRed : Form1::kField.colour);
  account.box.SetToolTip(std::string(Form1::kPathTip) + (problem ? "\n" + *problem : ""));
}

}  // namespace

std::optional<std::string_view> DefaultQuantity(std::string_view data_dir) {
  const MarketPreset* const preset = PresetOf(data_dir);
  return preset == nullptr ? std::nullopt : std::optional(preset->quantity);
}

void AccountBoxes::BindEvents() {
  for (const AccountBox& account : BoxesOf(desktop_.Untouched().form1)) {
    account.box.on_change = [this, account] { Mark(account, session_.IsStockMarket()); };
  }
}

void AccountBoxes::MarkAll() {
  for (const AccountBox& account : BoxesOf(desktop_.form1())) {
    Mark(account, session_.IsStockMarket());
  }
}

std::optional<std::string> AccountBoxes::Problem() {
  for (const auto& [box, figure] : BoxesOf(desktop_.form1())) {
    if (auto problem = FigureProblem(figure, box.Text(), session_.IsStockMarket())) return problem;
  }
  return std::nullopt;
}

void AccountBoxes::DirectoryChanged() {
  Form1& form = desktop_.form1();
  form.lblPercentComm.SetVisible(session_.IsStockMarket());
  if (const MarketPreset* const preset = PresetOf(session_.DataDir)) {
    form.txtContractValue.SetText(preset->margin);
    desktop_.form3().txtContractVol.SetText(preset->quantity);
    form.txtProfitperContract.SetText(preset->profit);
    form.txtcomm.SetText(preset->commission);
  }
  ReadContract(session_, inputs_);
  MarkAll();
}

void AccountBoxes::GroupTexts() {
  Form1& form = desktop_.form1();
  for (TextBox* box : {&form.txtInitPorfolio, &form.txtContractValue, &form.txtProfitperContract}) {
    box->SetText(PatternText(box->Text(), kAccountPattern));
  }
}

}  // namespace velumar
