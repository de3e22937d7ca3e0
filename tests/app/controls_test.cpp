#include <QAbstractButton>
#include <QAbstractItemView>
#include <QCalendarWidget>
#include <QCheckBox>
#include <QComboBox>
#include <QCompleter>
#include <QDateEdit>
#include <QLineEdit>
#include <QPushButton>
#include <QSlider>
#include <stdexcept>

#include "app/controls/key_codes.h"
#include "shown_desktop.h"

namespace velumar {
namespace {

using ::testing::ElementsAre;

class ControlsTest : public ShownDesktop {
 protected:
  ControlsTest() {
    form.Show();
    panel.Show();
  }
  // Records the events of the list of securities.
  QComboBox& WatchSecurities() {
    form.Combo1.on_click = [this] { events.push_back("click " + Chosen()); };
    form.Combo1.on_key_up = [this](int code) {
      events.push_back("key " + std::to_string(code) + " " + form.Combo1.Text());
    };
    return WidgetOf<QComboBox>(form.Combo1);
  }
  std::string Chosen() const {
    return form.Combo1.Text() + " " + std::to_string(form.Combo1.Index());
  }

  Form1& form = desktop.form1();
  Form3& panel = desktop.form3();
  std::vector<std::string> events;
};

TEST_F(ControlsTest, ChangesByTheLogicAreShownAndSendNoSecondEvent) {
  for (Form* each : {static_cast<Form*>(&form), static_cast<Form*>(&panel)}) {
    for (Control* control : each->Controls()) {
      const std::string name = control->Name();
      control->on_change = [this, name] { events.push_back("change " + name); };
      control->on_click = [this, name] { events.push_back("click " + name); };
      control->on_key_up = [this, name](int) { events.push_back("key " + name); };
    }
  }
  form.Text3.SetText("/other/");
  form.DTPicker1.SetValue(20070203);
  form.Command5.SetText("A &B");
  form.txtVAT.SetEnabled(false);
  form.Image3.SetPlace(3375, 2295);
  panel.HScrollx.SetValue(10);
  panel.chkShowBigform.SetChecked(true);
  panel.Combo2.SetIndex(1);
  panel.Combo2.SetText("7");
  QApplication::processEvents();
  EXPECT_THAT(events, ElementsAre("change Text3", "change DTPicker1", "change HScrollx",
                                  "click chkShowBigform", "click Combo2"));
  EXPECT_EQ(WidgetOf<QLineEdit>(form.Text3).text(), QStringLiteral("/other/"));
  EXPECT_EQ(WidgetOf<QDateEdit>(form.DTPicker1).text(), QStringLiteral("03/02/2007"));
  EXPECT_EQ(WidgetOf<QPushButton>(form.Command5).text(), QStringLiteral("A &B"));
  EXPECT_FALSE(WidgetOf(form.txtVAT).isEnabled());
  EXPECT_EQ(WidgetOf(form.Image3).geometry(), QRect(225, 153, 26, 25));
  EXPECT_EQ(WidgetOf<QSlider>(panel.HScrollx).value(), 10);
  EXPECT_TRUE(WidgetOf<QCheckBox>(panel.chkShowBigform).isChecked());
}

TEST_F(ControlsTest, TypingSendsAChangeForEachStrokeAndThenTheKey) {
  form.txtcomm.SetText("1,000");
  auto& line = WidgetOf<QLineEdit>(form.txtcomm);
  line.setFocus();
  line.setCursorPosition(1);
  form.txtcomm.on_change = [&] { events.push_back(form.txtcomm.Text()); };
  form.txtcomm.on_key_up = [&](int code) { events.push_back(std::to_string(code)); };
  form.Command5.on_click = [&] { events.emplace_back("click"); };
  // The Enter that closed a message box is released here.
  QTest::keyRelease(&line, Qt::Key_Return);
  QTest::keyClicks(&line, QStringLiteral("5\\"));
  QTest::keyClick(&line, Qt::Key_Return);
  QTest::keyClick(&WidgetOf(form.Command5), Qt::Key_Return);
  EXPECT_THAT(events, ElementsAre("15,000", "53", "15\\,000", "0", "13", "click"));
  form.txtcomm.SetText("99,9990");
  EXPECT_EQ(line.cursorPosition(), 3) << "the cursor stays";
}

TEST_F(ControlsTest, LeavingABoxReachesTheModel) {
  Activate(panel);
  int left = 0;
  panel.txtContractVol.on_leave = [&] { ++left; };
  WidgetOf(panel.txtContractVol).setFocus();
  Click(WidgetOf(panel.imgLong));
  EXPECT_EQ(left, 0) << "a picture takes no focus";
  WidgetOf(panel.HScrollx).setFocus();
  EXPECT_EQ(left, 1);
}

TEST_F(ControlsTest, AChoiceIsARowEvenAmongEqualOnes) {
  QComboBox& box = WatchSecurities();
  form.Combo1.SetRows({{"PTT", 0}, {"PTT", 1}, {"AAPL", 2}});
  form.Combo1.SetIndex(1);  // sorted: AAPL, PTT, PTT
  events.clear();
  EXPECT_EQ(box.currentText(), QStringLiteral("PTT"));
  QTest::keyClick(&box, Qt::Key_Down);
  EXPECT_THAT(events, ElementsAre("click PTT 2", "key 40 PTT"));
}

TEST_F(ControlsTest, ATypedTextStaysTyped) {
  QLineEdit& line = *WatchSecurities().lineEdit();
  form.Combo1.SetRows({{"AAPL", 0}, {"PTT", 1}});
  form.Combo1.SetIndex(0);
  events.clear();
  line.setFocus();
  line.selectAll();
  QTest::keyClicks(&line, QStringLiteral("PTT"));
  QTest::keyClick(&line, Qt::Key_Return);
  WidgetOf(form.txtVAT).setFocus();
  EXPECT_EQ(Chosen(), "PTT -1");
  EXPECT_THAT(events, ElementsAre("key 80 P", "key 84 PT", "key 84 PTT", "key 13 PTT"));
}

TEST_F(ControlsTest, ATypedTextOffersSymbolsAndNames) {
  QLineEdit& line = *WatchSecurities().lineEdit();
  form.Combo1.SetRows({{"AAPL", 0, "Orchard Fruits"},
                       {"FRU", 1, "Northern Rail"},
                       {"PTT", 2, "Grand Fruit Trading"},
                       {"PTT", 3, "Grand Fruit Trading"}});
  line.setFocus();
  line.selectAll();
  QTest::keyClicks(&line, QStringLiteral("fru"));
  ASSERT_NE(line.completer(), nullptr);
  QAbstractItemView& offer = *line.completer()->popup();
  ASSERT_TRUE(offer.isVisible());
  QStringList offered;
  for (int i = 0; i < offer.model()->rowCount(); ++i) {
    offered.push_back(offer.model()->index(i, 0).data().toString());
  }
  EXPECT_EQ(offered.join(QLatin1Char(' ')), QStringLiteral("FRU AAPL PTT PTT"));
  const auto close_at_third_row = [&offer](Qt::Key key) {
    for (int i = 0; i < 3; ++i) QTest::keyClick(&offer, Qt::Key_Down);
    QTest::keyClick(&offer, key);
    QApplication::processEvents();
  };
  close_at_third_row(Qt::Key_Escape);
  EXPECT_EQ(line.text(), QStringLiteral("fru")) << "the typed text returns";
  QTest::keyClicks(&line, QStringLiteral("i"));
  close_at_third_row(Qt::Key_Return);
  EXPECT_EQ(Chosen(), "PTT 3");
  EXPECT_EQ(line.text(), QStringLiteral("PTT"));
  EXPECT_THAT(events, testing::Contains("click PTT 3"));
}

TEST_F(ControlsTest, AChoiceMayReplaceListsAndTheWheelNeedsTheFocus) {
  form.Combo1.on_click = [this] {
    form.cbxPeriod.Clear();
    form.cbxPeriod.SetText("D");
  };
  form.Combo1.SetRows({{"AAPL", 0}, {"PTT", 1}});
  form.Combo1.UserChoose(1);
  EXPECT_EQ(WidgetOf<QComboBox>(form.cbxPeriod).count(), 0);
  EXPECT_EQ(WidgetOf<QComboBox>(form.cbxPeriod).currentText(), QStringLiteral("D"));
  QWidget& box = WidgetOf(form.Combo1);
  QWheelEvent up(QPointF(5, 5), box.mapToGlobal(QPointF(5, 5)), {}, QPoint(0, 120), Qt::NoButton,
                 Qt::NoModifier, Qt::NoScrollPhase, false);
  QApplication::sendEvent(&box, &up);
  EXPECT_EQ(form.Combo1.Index(), 1);
  int double_clicks = 0;
  panel.Combo2.on_double_click = [&] { ++double_clicks; };
  QTest::mouseDClick(WidgetOf<QComboBox>(panel.Combo2).lineEdit(), Qt::LeftButton);
  EXPECT_EQ(double_clicks, 1);
}

TEST_F(ControlsTest, ATypedDateReplacesAllOfTheOldOne) {
  form.DTPicker1.SetValue(20071120);
  QWidget& box = WidgetOf(form.DTPicker1);
  box.setFocus();
  QTest::keyClick(&box, Qt::Key_A, Qt::ControlModifier);
  QTest::keyClicks(&box, QStringLiteral("12/10/2005"));
  EXPECT_EQ(form.DTPicker1.Value(), 20051012);
  QTest::keyClick(&box, Qt::Key_Home);
  QTest::keyClicks(&box, QStringLiteral("06012004"));
  EXPECT_EQ(form.DTPicker1.Value(), 20040106);
  QTest::keyClick(&box, Qt::Key_A, Qt::ControlModifier);
  QTest::keyClicks(&box, QStringLiteral("7/8/2003"));
  EXPECT_EQ(form.DTPicker1.Value(), 20030807);
}

TEST_F(ControlsTest, TheCalendarMarksTheDaysOfTheSeriesAndOffersThreeOfThem) {
  form.DTPicker1.SetValue(20050614);
  std::vector<DayChoice> choices;
  form.DTPicker1.on_choice = [&](DayChoice choice) { choices.push_back(choice); };
  std::vector<std::int32_t> days;
  form.DTPicker1.covered_days = [&] { return days; };
  QCalendarWidget& calendar = *WidgetOf<QDateEdit>(form.DTPicker1).calendarWidget();
  calendar.setSelectedDate(QDate(2005, 6, 14));
  const auto picture = [&] {
    QShowEvent opening;
    QApplication::sendEvent(&calendar, &opening);
    return calendar.grab().toImage();
  };
  const QImage without_days = picture();
  const auto buttons = calendar.findChildren<QPushButton*>();
  ASSERT_EQ(buttons.size(), 3);
  for (QPushButton* button : buttons) EXPECT_FALSE(button->isEnabled());
  days = {20050613, 20050615};
  EXPECT_NE(picture(), without_days);
  for (QPushButton* button : buttons) button->click();
  EXPECT_THAT(choices, ElementsAre(DayChoice::kFirst, DayChoice::kLast, DayChoice::kRandom));
}

TEST_F(ControlsTest, APictureButtonIsPressedReleasedAndClicked) {
  const auto move = [this](float twips) {
    form.Image3.SetPlace(form.Image3.Left() + twips, form.Image3.Top() + twips);
  };
  form.Image3.on_press = [&] {
    events.push_back("press");
    move(15);
  };
  form.Image3.on_release = [&] {
    events.push_back("release");
    move(-15);
  };
  form.Image3.on_click = [&] { events.push_back("click"); };
  QWidget& button = WidgetOf(form.Image3);
  Click(button);
  EXPECT_THAT(events, ElementsAre("press", "release", "click"));

  events.clear();
  QTest::mousePress(&button, Qt::LeftButton);
  QTest::mouseMove(&button, QPoint(200, 200));
  QTest::mouseRelease(&button, Qt::LeftButton, {}, QPoint(200, 200));
  EXPECT_THAT(events, ElementsAre("press", "release")) << "released outside: no click";
  EXPECT_EQ(form.Image3.Left(), 3360);

  form.Image3.on_click = [] { throw std::runtime_error("F12.DAT: no permission to write"); };
  Click(button);
  EXPECT_THAT(reports, ElementsAre("F12.DAT: no permission to write"));
}

}  // namespace
}  // namespace velumar
