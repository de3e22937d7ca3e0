#pragma once

#include <array>

#include "forms/form1.h"
#include "forms/form2.h"
#include "forms/form3.h"
#include "forms/frm_card.h"
#include "forms/frm_drill.h"
#include "forms/frm_drill_chart.h"
#include "forms/frm_import.h"
#include "forms/frm_picture.h"
#include "forms/frm_practice.h"
#include "forms/frm_result.h"
#include "forms/frm_score.h"
#include "forms/frm_ticket.h"
#include "forms/graph2.h"

namespace velumar {

// One number of the run in very large type.
class BigWindow : public Form {
 public:
  BigWindow(const FormSpec& form, const ControlSpec& label) : Form(form), lblScore(*this, label) {}

  static constexpr Look BigType(Colour colour, Alignment alignment) {
    return {.colour = colour,
            .face = FontFace::kImpact,
            .points = 36,
            .bold = true,
            .italic = true,
            .alignment = alignment};
  }

  Label lblScore;
};

// Owns the windows, one of each. An accessor of an unloaded window first loads it, hidden. Use
// Untouched() to look at windows without loading them.
class Desktop {
 public:
  struct Windows {
    Form1 form1;
    Form2 form2;
    Form3 form3;
    BigWindow frmBigDateTime{{"frmBigDateTime", "Velumar", 6195, 990},
                             {"lblScore", 0, 120, 6135, 900, "01/25/2007  - 16:00", "",
                              BigWindow::BigType(kBlue, Alignment::kCentre)}};
    BigWindow frmBigScore{{"frmBigScore", "Velumar", 4125, 990},
                          {"lblScore", 0, 120, 4095, 900, "100,000,000", "",
                           BigWindow::BigType(kDarkGreen, Alignment::kCentre)}};
    BigWindow frmBigPrice{{"frmBigPrice", "Velumar", 11955, 1035},
                          {"lblScore", 0, 120, 11895, 900, "O: 111.00 H:222.00 L:333.00 C:444.00",
                           "", BigWindow::BigType(kDarkGreen, Alignment::kLeft)}};
    FrmScore frmScore;
    FrmResult frmResult;
    Graph2 graph2;
    FrmImport frmImport;
    FrmPractice frmPractice;
    FrmPicture frmPicture;
    FrmTicket frmTicket;
    FrmCard frmCard;
    FrmDrill frmDrill;
    FrmDrillChart frmDrillChart;
  };

  Form1& form1() { return Loaded(windows_.form1); }
  Form2& form2() { return Loaded(windows_.form2); }
  Form3& form3() { return Loaded(windows_.form3); }
  BigWindow& frmBigDateTime() { return Loaded(windows_.frmBigDateTime); }
  BigWindow& frmBigScore() { return Loaded(windows_.frmBigScore); }
  BigWindow& frmBigPrice() { return Loaded(windows_.frmBigPrice); }
  FrmScore& frmScore() { return Loaded(windows_.frmScore); }
  FrmResult& frmResult() { return Loaded(windows_.frmResult); }
  Graph2& graph2() { return Loaded(windows_.graph2); }
  FrmImport& frmImport() { return Loaded(windows_.frmImport); }
  FrmPractice& frmPractice() { return Loaded(windows_.frmPractice); }
  FrmPicture& frmPicture() { return Loaded(windows_.frmPicture); }
  FrmTicket& frmTicket() { return Loaded(windows_.frmTicket); }
  FrmCard& frmCard() { return Loaded(windows_.frmCard); }
  FrmDrill& frmDrill() { return Loaded(windows_.frmDrill); }
  FrmDrillChart& frmDrillChart() { return Loaded(windows_.frmDrillChart); }

  // Loads the window, hidden, if it isn't loaded.
  void Load(Form& form) { Loaded(form); }
  // Runs on_unload; the next load starts from the control table.
  void Unload(Form& form) {
    if (form.Loaded()) form.Unload();
  }

  Windows& Untouched() { return windows_; }
  std::array<Form*, 16> All() {
    return {&windows_.form1,          &windows_.form2,       &windows_.form3,
            &windows_.frmBigDateTime, &windows_.frmBigScore, &windows_.frmBigPrice,
            &windows_.frmScore,       &windows_.frmResult,   &windows_.graph2,
            &windows_.frmImport,      &windows_.frmPractice, &windows_.frmPicture,
            &windows_.frmCard,        &windows_.frmTicket,   &windows_.frmDrill,
            &windows_.frmDrillChart};
  }
  // Null if there is no window of that name.
  Form* Find(std::string_view name) {
    for (Form* form : All()) {
      if (form->Name() == name) return form;
    }
    return nullptr;
  }

  void SetListener(FormListener* listener) {
    for (Form* form : All()) form->SetListener(listener);
  }

 private:
  template <typename Window>
  static Window& Loaded(Window& window) {
    if (!window.Loaded()) window.Load();
    return window;
  }

  Windows windows_;
};

}  // namespace velumar
