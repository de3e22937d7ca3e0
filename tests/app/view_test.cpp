#include <gmock/gmock.h>

#include <QAbstractButton>
#include <QCalendarWidget>
#include <QCheckBox>
#include <QDateEdit>
#include <QDragEnterEvent>
#include <QLineEdit>
#include <QMimeData>
#include <QPushButton>
#include <QSlider>
#include <stdexcept>

#include "app/controls/key_codes.h"
#include "shown_desktop.h"

namespace velumar {
namespace {

using ::testing::ElementsAre;
using ViewTest = ShownDesktop;

// The view shows a change by the logic, and doesn't return it as a second one by the user.
TEST_F(ViewTest, ChangesByTheLogicShowAndDontComeBackAsTheUsers) {
  Form1& form = desktop.form1();
  Form3& panel = desktop.form3();
  form.Show();
  panel.Show();
  std::vector<std::string> events;
  for (Form* each : {static_cast<Form*>(&form), static_cast<Form*>(&panel)}) {
    for (Control* control : each->Controls()) {
      const std::string name = control->Name();
      control->on_change = [&events, name] { events.push_back("change " + name); };
      control->on_click = [&events, name] { events.push_back("click " + name); };
      control->on_key_up = [&events, name](int) { events.push_back("key " + name); };
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
  EXPECT_FALSE(WidgetOf<QLineEdit>(form.txtVAT).isEnabled());
  EXPECT_EQ(WidgetOf<QWidget>(form.Image3).geometry(), QRect(225, 153, 26, 25));
  EXPECT_EQ(WidgetOf<QSlider>(panel.HScrollx).value(), 10);
  EXPECT_TRUE(WidgetOf<QCheckBox>(panel.chkShowBigform).isChecked());
}

TEST_F(ViewTest, ADateTypedOverAnotherReplacesAllOfIt) {
  Form1& form = desktop.form1();
  form.DTPicker1.SetValue(20071120);
  form.Show();
  auto& box = WidgetOf<QDateEdit>(form.DTPicker1);
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

TEST_F(ViewTest, TypingFiresAChangeForEachStrokeAndThenTheKey) {
  Form1& form = desktop.form1();
  form.Show();
  form.txtcomm.SetText("1,000");
  auto& line = WidgetOf<QLineEdit>(form.txtcomm);
  line.setFocus();
  line.setCursorPosition(1);
  std::vector<std::string> events;
  form.txtcomm.on_change = [&] { events.push_back(form.txtcomm.Text()); };
  form.txtcomm.on_key_up = [&](int code) { events.push_back(std::to_string(code)); };
  form.Command5.on_click = [&] { events.emplace_back("click"); };
  // A box that an Enter has closed hands the focus over while the key is still down.
  QTest::keyRelease(&line, Qt::Key_Return);
  QTest::keyClicks(&line, QStringLiteral("5\\"));
  QTest::keyClick(&line, Qt::Key_Return);
  QTest::keyClick(&WidgetOf<QPushButton>(form.Command5), Qt::Key_Return);
  EXPECT_THAT(events, ElementsAre("15,000", "53", "15\\,000", "0", "13", "click"));
  form.txtcomm.SetToolTip("not a number");
  form.txtcomm.SetText("99,9990");
  EXPECT_EQ(line.cursorPosition(), 3) << "the cursor stays";
}

TEST_F(ViewTest, TheCalendarMarksTheDaysOfTheSeriesAndOffersThreeOfThem) {
  Form1& form = desktop.form1();
  form.Show();
  form.DTPicker1.SetValue(20050614);
  std::vector<DayChoice> choices;
  form.DTPicker1.on_choice = [&](DayChoice choice) { choices.push_back(choice); };
  std::vector<std::int32_t> days;
  form.DTPicker1.covered_days = [&] { return days; };
  QCalendarWidget& calendar = *WidgetOf<QDateEdit>(form.DTPicker1).calendarWidget();
  calendar.setSelectedDate(QDate(2005, 6, 14));
  const auto shown = [&] {
    QShowEvent opening;
    QApplication::sendEvent(&calendar, &opening);
    return calendar.grab().toImage();
  };
  const QImage without = shown();
  const auto buttons = calendar.findChildren<QPushButton*>();
  ASSERT_EQ(buttons.size(), 3);
  for (QPushButton* button : buttons) EXPECT_FALSE(button->isEnabled());
  days = {20050613, 20050615};
  EXPECT_NE(shown(), without);
  for (QPushButton* button : buttons) button->click();
  EXPECT_THAT(choices, ElementsAre(DayChoice::kFirst, DayChoice::kLast, DayChoice::kRandom));
}

TEST_F(ViewTest, FilesDroppedOnTheSetupReachItOnceTheDropIsOver) {
  Form1& form = desktop.form1();
  form.Show();
  std::vector<std::string> dropped;
  form.on_drop = [&](const std::vector<std::string>& files) { dropped = files; };
  QMimeData files;
  files.setUrls({QUrl::fromLocalFile(QStringLiteral("/prices/\u00c4BC_D.csv")),
                 QUrl(QStringLiteral("https://example.org/x.csv"))});
  QDragEnterEvent enter(QPoint(50, 50), Qt::CopyAction, &files, Qt::LeftButton, {});
  QApplication::sendEvent(&View(form), &enter);
  EXPECT_TRUE(enter.isAccepted());
  QDropEvent drop(QPointF(50, 50), Qt::CopyAction, &files, Qt::LeftButton, {});
  QApplication::sendEvent(&View(form), &drop);
  EXPECT_THAT(dropped, testing::IsEmpty());
  QApplication::processEvents();
  EXPECT_THAT(dropped, ElementsAre("/prices/\u00c4BC_D.csv"));
}

TEST_F(ViewTest, LeavingABoxReachesTheModel) {
  Form3& panel = desktop.form3();
  panel.Show();
  QApplication::setActiveWindow(&View(panel));
  int left = 0;
  panel.txtContractVol.on_leave = [&] { ++left; };
  WidgetOf<QLineEdit>(panel.txtContractVol).setFocus();
  Click(WidgetOf<QAbstractButton>(panel.imgLong));
  EXPECT_EQ(left, 0) << "a picture takes no focus";
  WidgetOf<QSlider>(panel.HScrollx).setFocus();
  EXPECT_EQ(left, 1);
}

TEST_F(ViewTest, APictureButtonIsPressedReleasedAndClicked) {
  Form1& form = desktop.form1();
  form.Show();
  std::vector<std::string> events;
  form.Image3.on_press = [&] {
    events.push_back("press");
    form.Image3.SetPlace(form.Image3.Left() + 15, form.Image3.Top() + 15);
  };
  form.Image3.on_release = [&] {
    events.push_back("release");
    form.Image3.SetPlace(form.Image3.Left() - 15, form.Image3.Top() - 15);
  };
  form.Image3.on_click = [&] { events.push_back("click"); };
  auto& button = WidgetOf<QAbstractButton>(form.Image3);
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

TEST_F(ViewTest, AnyMouseButtonOnTheGroundIsAPress) {
  Form2& form = desktop.form2();
  form.Show();
  std::vector<std::string> presses;
  form.Image8.on_press = [&] { presses.emplace_back("backdrop"); };
  form.on_press = [&] { presses.emplace_back("window"); };
  QTest::mousePress(&WidgetOf<QWidget>(form.Image8), Qt::RightButton);
  // A label has no press of its own: the window behind it gets it.
  QTest::mousePress(&WidgetOf<QWidget>(form.Label6), Qt::MiddleButton);
  EXPECT_THAT(presses, ElementsAre("backdrop", "window"));
}

}  // namespace
}  // namespace velumar
