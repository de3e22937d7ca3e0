#pragma once

#include <array>

#include "forms/big_window.h"
#include "forms/form1.h"
#include "forms/form2.h"
#include "forms/form3.h"
#include "forms/frm_result.h"
#include "forms/frm_score.h"
#include "forms/graph2.h"

namespace velumar {

// Owns the windows, one of each. An accessor of an unloaded window first loads it, hidden. Use
// Untouched() to look at windows without loading them.
class Desktop {
 public:
  Desktop();
  Desktop(const Desktop&) = delete;
  Desktop& operator=(const Desktop&) = delete;

  Form1& form1() { return Touched(form1_); }
  Form2& form2() { return Touched(form2_); }
  Form3& form3() { return Touched(form3_); }
  BigWindow& frmBigDateTime() { return Touched(big_date_time_); }
  BigWindow& frmBigScore() { return Touched(big_score_); }
  BigWindow& frmBigPrice() { return Touched(big_price_); }
  FrmScore& frmScore() { return Touched(frm_score_); }
  FrmResult& frmResult() { return Touched(frm_result_); }
  Graph2& graph2() { return Touched(graph2_); }

  // Loads the window, hidden, if it isn't loaded.
  void Load(Form& form);
  // Runs on_unload; the next load starts from the control table.
  void Unload(Form& form);

  // The windows, without loading them.
  struct Windows {
    Form1& form1;
    Form2& form2;
    Form3& form3;
    BigWindow& frmBigDateTime;
    BigWindow& frmBigScore;
    BigWindow& frmBigPrice;
    FrmScore& frmScore;
    FrmResult& frmResult;
    Graph2& graph2;
  };
  Windows Untouched();
  std::array<Form*, 9> All();
  // Null if there is no window of that name.
  Form* Find(std::string_view name);

  void SetListener(FormListener* listener);

 private:
  template <typename Window>
  static Window& Touched(Window& window) {
    if (!window.Loaded()) window.BeLoaded();
    return window;
  }

  Form1 form1_;
  Form2 form2_;
  Form3 form3_;
  BigWindow big_date_time_;
  BigWindow big_score_;
  BigWindow big_price_;
  FrmScore frm_score_;
  FrmResult frm_result_;
  Graph2 graph2_;
};

}  // namespace velumar
