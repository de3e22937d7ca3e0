#include "shell/run_windows.h"

#include "base/number_text.h"

namespace velumar {

int RunWindows::ChartCount() const {
  return ToInt16(desktop_.form2().txtRefresh.Text()).value_or(0);
}

void RunWindows::ShowProgress(float done, std::string_view text) {
  Form2& navigator = desktop_.Untouched().form2;
  if (!navigator.Loaded()) return;
  navigator.Progress.SetFraction(done);
  navigator.Progress.SetToolTip(text);
}

void RunWindows::ShowRunning() {
  Form2& navigator = desktop_.form2();
  navigator.Image3.SetVisible(false);
  for (Control* button : {&navigator.Image4, &navigator.Image1, &navigator.Image2,
                          &navigator.Image6, &navigator.Image7}) {
    button->SetVisible(true);
  }
  LockSetup();
}

void RunWindows::ShowPaused() {
  ShowEnded();
  desktop_.form3().Combo2.SetEnabled(true);
  UnlockSetup();
}

void RunWindows::ShowEnded() {
  desktop_.form2().Image3.SetVisible(true);
  desktop_.form2().Image4.SetVisible(false);
}

void RunWindows::SetSetupLocked(bool locked) {
  Form1& setup = desktop_.form1();
  setup.Combo1.SetEnabled(!locked);
  for (Control* control :
       {static_cast<Control*>(&setup.Text3), static_cast<Control*>(&setup.Command5)}) {
    control->SetEnabled(!locked);
    control->SetVisible(!locked);
  }
  setup.chkBlind.SetEnabled(!locked);
  setup.Label6.SetVisible(locked);
}

void RunWindows::ShowStatus(const StatusTexts& texts) {
  Form3& panel = desktop_.form3();
  panel.Label6.SetText(texts.positions);
  panel.lblinfo.SetText(texts.account);
  panel.lblinfo.SetForeColour(kBlue);  // a refusal was red
  Label& score = desktop_.frmBigScore().lblScore;
  score.SetForeColour(texts.loss ? kRed : kBlue);
  score.SetText(texts.portfolio);
  Label& price = desktop_.frmBigPrice().lblScore;
  if (texts.moment) {
    price.SetForeColour(texts.moment->fell ? kRed : kBlue);
    desktop_.frmBigDateTime().lblScore.SetText(texts.moment->text);
  }
  price.SetText(texts.prices);
}

void RunWindows::ShowRefusal(std::string_view why) {
  Label& info = desktop_.form3().lblinfo;
  info.SetText(why);
  info.SetForeColour(kRed);
}

}  // namespace velumar
