#include "shell/market_presets.h"

#include <array>
#include <string>

#include "base/number_text.h"
#include "session/market_family.h"
#include "shell/account_box.h"

namespace velumar {

namespace {

constexpr std::string_view kAccountPattern = "###,###,###,###";

// What a market's word in the directory's name sets.
struct MarketPreset {
  std::string_view word;
  std::string_view margin;
  std::string_view quantity;
  std::string_view profit;
  std::string_view commission;
  bool percent;
};
constexpr std::array<MarketPreset, 3> kPresets{{{"SET", "100", "1,000", "1", "0.25", true},
                                                {"AFET", "20,000", "1", "5,000", "500", false},
                                                {"TFEX", "50,000", "1", "1,000", "450", false}}};

}  // namespace

std::optional<std::string_view> PresetQuantity(std::string_view data_dir) {
  std::optional<std::string_view> quantity;
  for (const MarketPreset& preset : kPresets) {
    if (data_dir.find(preset.word) != std::string_view::npos) quantity = preset.quantity;
  }
  return quantity;
}

void MarketPresets::DirectoryChanged() {
  desktop_.form1().lblPercentComm.SetVisible(false);
  FillBoxes();
  ReadContractFigures();
}

void MarketPresets::GroupTexts() {
  Form1& form = desktop_.form1();
  for (TextBox* box : {&form.txtInitPorfolio, &form.txtContractValue, &form.txtProfitperContract}) {
    box->SetText(PatternText(box->Text(), kAccountPattern));
  }
}

// A later word overrides an earlier one.
void MarketPresets::FillBoxes() {
  Form1& form = desktop_.form1();
  for (const MarketPreset& preset : kPresets) {
    if (session_.DataDir.find(preset.word) == std::string::npos) continue;
    form.txtContractValue.SetText(preset.margin);
    desktop_.form3().txtContractVol.SetText(preset.quantity);
    form.txtProfitperContract.SetText(preset.profit);
    form.txtcomm.SetText(preset.commission);
    if (preset.percent) form.lblPercentComm.SetVisible(true);
  }
}

void MarketPresets::ReadContractFigures() {
  Form1& form = desktop_.form1();
  const bool stock = IsStockMarket(session_);
  ReadFigure(form, form.txtContractValue, stock, session_.InitMargin);
  ReadFigure(form, form.txtProfitperContract, stock, session_.ProfitPerContract);
  MarkFigure(form, form.txtcomm, stock);  // the percent sign has come or gone
}

}  // namespace velumar
