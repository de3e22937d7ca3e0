#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <optional>
#include <string>

#include "e2e/desktop_hand.h"
#include "forms/desktop.h"
#include "support/scratch.h"

namespace velumar {

// The hand and the eyes of a trader on Velumar's windows, whatever system they run on. The places
// of the controls come from the windows' own tables.
class TraderHand : public testing::Test {
 protected:
  struct StepByHand {
    const PictureButton& button;
    int bars;  // in the store behind it
  };

  static void Sleep(int ms) { usleep(static_cast<useconds_t>(ms) * 1000); }

  std::optional<ScreenRect> Find(const Form& form) {
    const std::string title = form.Name() == "Form1" ? "Velumar1.0" : "Velumar";
    return hand.Find(title, form.Width(), form.Height());
  }
  void ClickOn(const Form& form, const Control& control) {
    std::optional<ScreenRect> window;
    ASSERT_TRUE(Eventually([&] { return (window = Find(form)).has_value(); }, 3))
        << form.Name() << " isn't shown";
    hand.Click(*window, control.Left(), control.Top(), control.Width(), control.Height());
  }

  // -1 while there is no such series.
  static int BarsOf(const std::string& directory, const std::string& symbol) {
    try {
      return static_cast<int>(ReadBars(directory, symbol, -1).size());
    } catch (const std::exception&) {
      return -1;
    }
  }

  // One on, one back, thirty on, thirty back, from a pause on so many bars.
  std::vector<StepByHand> StepsFrom(int paused) const {
    return {{navigator.Image1, paused + 1},
            {navigator.Image2, paused},
            {navigator.Image7, paused + 30},
            {navigator.Image6, paused}};
  }

  ScratchFolder scratch;
  DesktopHand hand;
  Desktop tables;
  Form1& setup = tables.Untouched().form1;
  Form2& navigator = tables.Untouched().form2;
  Form3& panel = tables.Untouched().form3;
};

}  // namespace velumar
