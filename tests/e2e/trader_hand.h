#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <optional>
#include <string>

#include "e2e/desktop_hand.h"
#include "forms/desktop.h"
#include "support/scratch.h"

namespace velumar {

// A trader working with Velumar's windows on any system. The places of the controls come from the
// windows' own tables.
struct TraderHand : testing::Test {
  static void Sleep(int ms) { usleep(static_cast<useconds_t>(ms) * 1000); }

  std::optional<ScreenRect> Find(const Form& form) const {
    const std::string title = form.Name() == "Form1" ? "Velumar1.0" : "Velumar";
    return hand.Find(title, form.Width(), form.Height());
  }
  void ClickOn(const Form& form, const Control& control) const {
    std::optional<ScreenRect> window;
    ASSERT_TRUE(Eventually([&] { return (window = Find(form)).has_value(); }, 3))
        << form.Name() << " is not visible";
    hand.Click(*window, control.Left(), control.Top(), control.Width(), control.Height());
  }

  // The bars of a series; -1 if it cannot be read.
  static int BarsOf(const std::string& directory, const std::string& symbol) {
    try {
      return static_cast<int>(ReadBars(directory, symbol, -1).size());
    } catch (const std::exception&) {
      return -1;
    }
  }

  ScratchFolder scratch;
  DesktopHand hand;
  Desktop tables;
  Form1& setup = tables.Untouched().form1;
  Form2& navigator = tables.Untouched().form2;
  Form3& panel = tables.Untouched().form3;
};

}  // namespace velumar
