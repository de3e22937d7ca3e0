#include "app/wiring/run_key_filter.h"

#include <QtWidgets>

#include "platform/virtual_platform.h"
#include "shown_desktop.h"

namespace velumar {
namespace {

// Keys go to the active window, as from a keyboard.
struct RunKeyFilterTest : ShownDesktop {
  RunKeyFilterTest() {
    Form2& run = desktop.form2();
    for (Form* form : std::initializer_list<Form*>{&run, &panel}) {
      form->Show();
      for (Control* control : form->Controls()) {
        if (control->Kind() != ControlKind::kPictureButton) continue;
        control->on_click = [this, control] { clicks.push_back(control->Name()); };
      }
    }
    run.Image4.SetVisible(false);
    Activate(panel);
  }

  // The clicks of a key in the window in front.
  std::vector<std::string> After(Qt::Key key, Qt::KeyboardModifiers held = Qt::NoModifier) {
    clicks.clear();
    QTest::keyClick(QApplication::activeWindow()->windowHandle(), key, held);
    QApplication::processEvents();
    return clicks;
  }

  SimSession session;
  RecordingChart chart;
  TraderFocus trader{chart};
  RunKeys keys{session,
               desktop,
               trader,
               [this] { return chart_opening; },
               {{run_key::kBoard, [this] { clicks.emplace_back("frmScore"); }},
                {run_key::kGoTo, [this] { clicks.emplace_back("date"); }},
                {run_key::kEarlierTrade, [this] { clicks.emplace_back("earlier"); }},
                {run_key::kPlan, [this] { clicks.emplace_back("plan"); }}}};
  RunKeyFilter filter{keys};
  Form3& panel = desktop.form3();
  bool chart_opening = false;
  std::vector<std::string> clicks;
};

TEST_F(RunKeyFilterTest, ASliderAndACheckBoxKeepKeysOnlyIfReachedWithTab) {
  QWidget& slider = WidgetOf(panel.HScrollx);
  QWidget& box = WidgetOf(panel.chkShowBigform);
  slider.setFocus(Qt::MouseFocusReason);
  EXPECT_THAT(After(Qt::Key_Left), ElementsAre("Image2"));
  EXPECT_THAT(After(Qt::Key_L, Qt::ShiftModifier), ElementsAre("imgOffsetLong"));
  EXPECT_THAT(After(Qt::Key_L, Qt::ControlModifier), IsEmpty());
  box.setFocus(Qt::MouseFocusReason);
  EXPECT_THAT(After(Qt::Key_Space), ElementsAre("Image3"));

  slider.setFocus(Qt::TabFocusReason);
  EXPECT_THAT(After(Qt::Key_Left), IsEmpty());
  EXPECT_EQ(panel.HScrollx.Value(), 245);
  box.setFocus(Qt::BacktabFocusReason);
  EXPECT_THAT(After(Qt::Key_Space), IsEmpty());
  EXPECT_TRUE(panel.chkShowBigform.Checked());
  slider.setFocus(Qt::MouseFocusReason);
  box.setFocus(Qt::MouseFocusReason);
  EXPECT_THAT(After(Qt::Key_Space), ElementsAre("Image3")) << "a click gives the keys back";
}

TEST_F(RunKeyFilterTest, ABoxKeepsWhatIsTypedUntilItIsLeft) {
  auto& quantity = WidgetOf<QLineEdit>(panel.txtContractVol);
  int left = 0;
  panel.txtContractVol.on_leave = [&left] { ++left; };
  for (const Qt::Key way_out : {Qt::Key_Return, Qt::Key_Escape}) {
    quantity.setFocus(Qt::MouseFocusReason);
    quantity.selectAll();
    EXPECT_THAT(After(Qt::Key_L), IsEmpty());
    EXPECT_EQ(panel.txtContractVol.Text(), "l");
    Click(WidgetOf(panel.imgLong));
    EXPECT_TRUE(quantity.hasFocus()) << "a picture takes no focus";
    After(way_out);
    EXPECT_FALSE(quantity.hasFocus());
    EXPECT_THAT(After(Qt::Key_L), ElementsAre("imgLong"));
  }
  EXPECT_GE(left, 2);
}

// A name typed there, or an answer to a box, must not place an order.
TEST_F(RunKeyFilterTest, TheScoreBoardAndBoxesKeepAllKeys) {
  EXPECT_THAT(After(Qt::Key_B), ElementsAre("frmScore"));
  desktop.frmScore().Show();
  Activate(desktop.frmScore());
  EXPECT_THAT(After(Qt::Key_L), IsEmpty());
  QMessageBox box;
  box.open();
  filter.PressFromChart({.code = run_key::kLong});
  EXPECT_THAT(clicks, IsEmpty());
  box.close();
  filter.PressFromChart({.code = run_key::kLong});
  EXPECT_THAT(clicks, ElementsAre("imgLong"));
}

TEST_F(RunKeyFilterTest, AListKeepsKeysOnlyWhileItsLineIsTypedInto) {
  auto& list = WidgetOf<QComboBox>(panel.Combo2);
  list.setFocus(Qt::MouseFocusReason);
  EXPECT_THAT(After(Qt::Key_S), ElementsAre("ImgShort")) << "a row was only chosen";
  Click(*list.lineEdit());
  EXPECT_THAT(After(Qt::Key_S), IsEmpty());
  After(Qt::Key_Return);
  EXPECT_THAT(After(Qt::Key_S), ElementsAre("ImgShort"));
  list.setFocus(Qt::TabFocusReason);
  EXPECT_THAT(After(Qt::Key_S), IsEmpty());
}

// The repeats that wait while a step is made count once, and none is left after the release.
TEST_F(RunKeyFilterTest, StepsOfAHeldKeyEndWithIt) {
  EXPECT_THAT(After(Qt::Key_G), ElementsAre("date"));
  clicks.clear();
  QWindow* const window = View(panel).windowHandle();
  const auto send = [&](QEvent::Type type, bool repeated) {
    QKeyEvent key(type, Qt::Key_Right, Qt::NoModifier, QString(), repeated);
    QCoreApplication::sendEvent(window, &key);
  };
  send(QEvent::KeyPress, false);
  EXPECT_EQ(clicks.size(), 1U);
  for (int i = 0; i < 5; ++i) send(QEvent::KeyPress, true);
  EXPECT_EQ(clicks.size(), 1U);
  ASSERT_TRUE(QTest::qWaitFor([&] { return clicks.size() >= 10; }, 3000)) << "steps while held";
  send(QEvent::KeyRelease, false);
  const std::size_t at_release = clicks.size();
  QTest::qWait(50);
  EXPECT_EQ(clicks.size(), at_release);
  for (const bool released : {true, false}) {
    filter.PressFromChart({.code = run_key::kRight, .repeated = true});
    if (released) filter.ReleaseFromChart();
    QTest::qWait(900);
    EXPECT_EQ(clicks.size() > at_release, !released) << "steps from the chart";
  }
  const std::size_t later = clicks.size();
  QTest::qWait(50);
  EXPECT_EQ(clicks.size(), later) << "a release that was lost ends the steps too";
}

TEST_F(RunKeyFilterTest, AHeldKeyStepsOneBarAtATimeAndOrdersNothing) {
  const RunKeyPress held{.code = run_key::kRight, .repeated = true};
  desktop.form2().Image1.on_click = [&] {
    clicks.emplace_back("Image1");
    if (clicks.size() < 9) keys.PressFromChart(held);
  };
  keys.PressFromChart(held);
  keys.PressFromChart(held);
  EXPECT_THAT(clicks, ElementsAre("Image1", "Image1"));
  clicks.clear();
  for (const int code : {run_key::kSpace, run_key::kLong, run_key::kShort}) {
    keys.PressFromChart({.code = code, .repeated = true});
  }
  chart_opening = true;
  keys.PressFromChart({.code = run_key::kLong});
  EXPECT_THAT(clicks, IsEmpty());
}

}  // namespace
}  // namespace velumar
