#pragma once

#include "forms/desktop.h"
#include "session/run_inputs.h"
#include "session/run_view.h"

namespace velumar {

// Reads a run's inputs from the boxes of setup window, navigator and trade panel, and shows the run
// there and in the big displays.
class RunWindows : public RunInputs, public RunView {
 public:
  explicit RunWindows(Desktop& desktop) : desktop_(desktop) {}

  std::string Symbol() const override { return desktop_.form1().Combo1.Text(); }
  bool Blind() const override { return desktop_.form1().chkBlind.Checked(); }
  std::string Interval() const override { return desktop_.form1().cbxPeriod.Text(); }
  std::int32_t StartDay() const override { return desktop_.form1().DTPicker1.Value(); }
  std::string StartingMoney() const override { return desktop_.form1().txtInitPorfolio.Text(); }
  std::string Delay() const override { return desktop_.form3().Combo2.Text(); }
  int ChartCount() const override;
  // A panel that is closed keeps its text: loading it would start the account again.
  std::string Quantity() const override { return desktop_.Untouched().form3.txtContractVol.Text(); }
  std::string Commission() const override { return desktop_.form1().txtcomm.Text(); }
  std::string Vat() const override { return desktop_.form1().txtVAT.Text(); }
  std::string Margin() const override { return desktop_.form1().txtContractValue.Text(); }
  std::string ProfitPerContract() const override {
    return desktop_.form1().txtProfitperContract.Text();
  }

  void SetStatusLine(std::string_view text) override { desktop_.form2().Label6.SetText(text); }
  void SetStatusAdvice(std::string_view text) override { desktop_.form2().Label6.SetToolTip(text); }
  void ShowProgress(float done, std::string_view text) override;
  void ShowRunning() override;
  void ShowPaused() override;
  void ShowEnded() override;
  void LockSetup() override { SetSetupLocked(true); }
  void UnlockSetup() override { SetSetupLocked(false); }
  void LockChartCount() override { desktop_.form2().txtRefresh.SetEnabled(false); }
  void UnlockChartCount() override { desktop_.form2().txtRefresh.SetEnabled(true); }
  void ShowStartDay(std::int32_t day) override { desktop_.form1().DTPicker1.SetValue(day); }
  void ShowDelay(std::string_view seconds) override { desktop_.form3().Combo2.SetText(seconds); }
  void OpenPanel() override { desktop_.form3(); }
  void ShowStatus(const StatusTexts& texts) override;
  void ShowRefusal(std::string_view why) override;

 private:
  void SetSetupLocked(bool locked);

  Desktop& desktop_;
};

}  // namespace velumar
