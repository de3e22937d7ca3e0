#include <QtWidgets>
#include <stdexcept>

#include "app/controls/control_view.h"
#include "shown_desktop.h"
#include "support/scratch_folder.h"

namespace velumar {
namespace {

struct ControlsTest : ShownDesktop {
  ControlsTest() {
    form.Show();
    panel.Show();
  }
  std::string Chosen() const {
    return form.Combo1.Text() + " " + std::to_string(form.Combo1.Index());
  }

  Form1& form = desktop.form1();
  Form3& panel = desktop.form3();
  std::vector<std::string> events;
};

TEST_F(ControlsTest, ChangesByTheLogicAreShownAndSendNoSecondEvent) {
  for (Control* control : std::initializer_list<Control*>{&form.DTPicker1, &panel.HScrollx,
                                                          &panel.chkShowBigform, &panel.Combo2}) {
    const std::string name = control->Name();
    control->on_change = [this, name] { events.push_back("change " + name); };
    control->on_click = [this, name] { events.push_back("click " + name); };
  }
  form.DTPicker1.SetValue(20070203);
  panel.HScrollx.SetValue(10);
  panel.chkShowBigform.SetChecked(true);
  panel.Combo2.SetIndex(1);
  panel.Combo2.SetText("7");
  QApplication::processEvents();
  EXPECT_THAT(events, ElementsAre("change DTPicker1", "change HScrollx", "click chkShowBigform",
                                  "click Combo2"));
  EXPECT_EQ(WidgetOf<QDateEdit>(form.DTPicker1).text(), QStringLiteral("03/02/2007"));
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
  QTest::keyRelease(&line, Qt::Key_Return);  // it closed a message box
  QTest::keyClicks(&line, QStringLiteral("5\\"));
  QTest::keyClick(&line, Qt::Key_Return);
  QTest::keyClick(&WidgetOf(form.Command5), Qt::Key_Return);
  EXPECT_THAT(events, ElementsAre("15,000", "53", "15\\,000", "0", "13", "click"));
  form.txtcomm.SetText("99,9990");
  EXPECT_EQ(line.cursorPosition(), 3) << "the cursor stays";
  events.clear();
  QTest::keyPress(&line, Qt::Key_Return);
  QFocusEvent elsewhere(QEvent::FocusOut, Qt::TabFocusReason);
  QApplication::sendEvent(&line, &elsewhere);
  QTest::keyRelease(&line, Qt::Key_Return);
  EXPECT_THAT(events, IsEmpty()) << "a key is typed where it goes down and up";
}

TEST_F(ControlsTest, ATypedTextStaysTypedAndTheWheelNeedsTheFocus) {
  auto& box = WidgetOf<QComboBox>(form.Combo1);
  form.Combo1.SetRows({{"AAPL", 0}, {"PTT", 1}});
  form.Combo1.SetIndex(0);
  form.Combo1.on_double_click = [this] { events.emplace_back("double click"); };
  form.Combo1.on_click = [this] { events.emplace_back("click"); };
  form.Combo1.on_key_up = [this](int code) {
    events.push_back("key " + std::to_string(code) + " " + form.Combo1.Text());
  };
  QTest::mouseDClick(box.lineEdit(), Qt::LeftButton);
  box.lineEdit()->selectAll();
  QTest::keyClicks(box.lineEdit(), QStringLiteral("PTT"));
  QTest::keyClick(box.lineEdit(), Qt::Key_Return);
  WidgetOf(form.txtVAT).setFocus();
  Roll(box, -1);
  EXPECT_EQ(Chosen(), "PTT -1");
  EXPECT_THAT(events,
              ElementsAre("double click", "key 80 P", "key 84 PT", "key 84 PTT", "key 13 PTT"));
}

TEST_F(ControlsTest, ATypedTextOffersSymbolsAndNames) {
  QLineEdit& line = *WidgetOf<QComboBox>(form.Combo1).lineEdit();
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
  std::vector<std::string> offered;
  for (int i = 0; i < offer.model()->rowCount(); ++i) {
    offered.push_back(offer.model()->index(i, 0).data().toString().toStdString());
  }
  EXPECT_THAT(offered, ElementsAre("FRU", "AAPL", "PTT", "PTT"));
  QTest::keyClick(&offer, Qt::Key_Down);
  QTest::keyClick(&offer, Qt::Key_Escape);
  QApplication::processEvents();
  EXPECT_EQ(line.text(), QStringLiteral("fru")) << "the typed text returns";
  QTest::keyClicks(&line, QStringLiteral("i"));
  for (int i = 0; i < 3; ++i) QTest::keyClick(&offer, Qt::Key_Down);
  QTest::keyClick(&offer, Qt::Key_Return);
  EXPECT_EQ(Chosen(), "PTT 3");
  EXPECT_EQ(line.text(), QStringLiteral("PTT"));
}

TEST_F(ControlsTest, ATypedDateReplacesAllOfTheOldOne) {
  form.DTPicker1.SetValue(20071120);
  QWidget& box = WidgetOf(form.DTPicker1);
  box.setFocus();
  const auto type = [&](const QKeySequence& first, const QString& text) {
    QTest::keySequence(&box, first);
    QTest::keyClicks(&box, text);
    return form.DTPicker1.Value();
  };
  EXPECT_EQ(type(QKeySequence::SelectAll, QStringLiteral("12/10/2005")), 20051012);
  EXPECT_EQ(type(Qt::Key_Home, QStringLiteral("06012004")), 20040106);
  EXPECT_EQ(type(QKeySequence::SelectAll, QStringLiteral("7/8/2003")), 20030807);
}

TEST_F(ControlsTest, TheCalendarMarksTheDaysOfTheSeriesAndOffersThreeOfThem) {
  form.DTPicker1.SetValue(20050614);
  std::vector<DayChoice> choices;
  form.DTPicker1.on_choice = [&](DayChoice choice) { choices.push_back(choice); };
  std::vector<std::int32_t> days;
  form.DTPicker1.covered_days = [&] { return days; };
  QCalendarWidget& calendar = *WidgetOf<QDateEdit>(form.DTPicker1).calendarWidget();
  calendar.setSelectedDate(QDate(2005, 6, 14));
  const auto use = [&] {
    QShowEvent opening;
    QApplication::sendEvent(&calendar, &opening);
    for (auto* const button : calendar.findChildren<QPushButton*>()) button->click();
    return calendar.grab().toImage();
  };
  const QImage without_days = use();
  EXPECT_THAT(choices, IsEmpty());
  days = {20050613, 20050615};
  EXPECT_NE(use(), without_days);
  days.clear();
  EXPECT_EQ(use(), without_days) << "another security";
  EXPECT_THAT(choices, ElementsAre(DayChoice::kFirst, DayChoice::kLast, DayChoice::kRandom));
}

TEST_F(ControlsTest, ATableShowsAndReportsItsSelection) {
  FrmImport& import = desktop.frmImport();
  import.Show();
  Table& files = import.lstFiles;
  files.SetColumns({{"File", false, 1500}, {"Remarks", false, 1500}});
  const auto cell = std::make_shared<std::string>("a");
  const auto show = [&](std::size_t rows) {
    files.SetContent({rows,
                      [cell](std::size_t, std::size_t) { return *cell; },
                      {},
                      [](std::size_t row) { return row == 1 ? kRed : Colour{0}; }});
  };
  show(3);
  files.Select({2});
  files.on_select = [&] { events.push_back(std::to_string(files.Selected().size())); };
  auto& table = WidgetOf<QTableView>(files);
  EXPECT_EQ(table.columnWidth(0), 100);
  EXPECT_EQ(table.selectionModel()->selectedRows().value(0).row(), 2);
  QTest::keyClick(&table, Qt::Key_Up);
  QTest::keyClick(&table, Qt::Key_Up, Qt::ShiftModifier);
  EXPECT_THAT(files.Selected(), ElementsAre(0, 1));
  *cell = "b";
  files.Refresh();
  EXPECT_EQ(table.model()->index(1, 0).data(), QStringLiteral("b"));
  EXPECT_TRUE(table.model()->index(1, 0).data(Qt::ForegroundRole).isValid());
  EXPECT_FALSE(table.model()->index(0, 0).data(Qt::ForegroundRole).isValid());
  EXPECT_THAT(files.Selected(), ElementsAre(0, 1));
  EXPECT_THAT(events, ElementsAre("1", "2"));
  show(4);
  files.Select({1});
  EXPECT_EQ(table.selectionModel()->selectedRows().value(0).row(), 1);
  const QPoint below(20, table.rowViewportPosition(3) + 2 * table.rowHeight(3));
  ASSERT_TRUE(table.viewport()->rect().contains(below));
  QTest::mouseClick(table.viewport(), Qt::LeftButton, {}, below);
  EXPECT_THAT(files.Selected(), ElementsAre(1)) << "below the rows";
  files.Select({});
  EXPECT_FALSE(table.selectionModel()->hasSelection());
  events.clear();
  files.on_key_up = [&](int code) { events.push_back(std::to_string(code)); };
  QTest::keyClick(&table, Qt::Key_Return);
  QTest::keyClick(&table, Qt::Key_Enter, Qt::KeypadModifier);
  QTest::keyClick(&table, Qt::Key_Delete);
  EXPECT_THAT(events, ElementsAre("13", "13", "46"));
}

TEST_F(ControlsTest, APictureIsThatOfItsFile) {
  FrmPicture& window = desktop.frmPicture();
  window.Show();
  const ScratchFolder folder;
  const auto shown = [&](const std::string& file) {
    window.imgChart.SetText(file);
    QWidget& picture = WidgetOf(window.imgChart);
    return picture.grab().toImage().pixelColor(picture.rect().center());
  };
  for (const QColor& colour : {QColor(Qt::red), QColor(Qt::blue)}) {
    QImage image(2000, 1000, QImage::Format_RGB32);
    image.fill(colour);
    const std::string file = folder.Sub(colour.name().toStdString() + ".png");
    image.save(QString::fromStdString(file));
    EXPECT_EQ(shown(file), colour);
  }
  EXPECT_NE(shown(""), QColor(Qt::blue)) << "a trade without a picture";
}

TEST_F(ControlsTest, EnterReachesTheWindowUnlessAButtonTakesIt) {
  FrmImport& dialog = desktop.frmImport();
  dialog.Show();
  dialog.on_enter = [&] { events.emplace_back("enter"); };
  dialog.on_escape = [&] { events.emplace_back("escape"); };
  dialog.cmdClose.on_click = [&] { events.emplace_back("close"); };
  for (Control* control :
       std::initializer_list<Control*>{&dialog.lstFiles, &dialog.txtSymbol, &dialog.chkAdjusted}) {
    QTest::keyClick(&WidgetOf(*control), Qt::Key_Return);
  }
  QTest::keyClick(WidgetOf<QComboBox>(dialog.cbxFromZone).lineEdit(), Qt::Key_Return);
  QTest::keyClick(&WidgetOf(dialog.cmdClose), Qt::Key_Return);
  QTest::keyClick(&WidgetOf(dialog.txtSymbol), Qt::Key_Escape);
  EXPECT_THAT(events, ElementsAre("enter", "enter", "enter", "enter", "close", "escape"));
}

TEST_F(ControlsTest, APictureButtonIsPressedReleasedAndClicked) {
  form.Image3.on_press = [&] { events.emplace_back("press"); };
  form.Image3.on_release = [&] { events.emplace_back("release"); };
  form.Image3.on_click = [] { throw std::runtime_error("F12.DAT: no permission to write"); };
  QWidget& button = WidgetOf(form.Image3);
  QTest::mousePress(&button, Qt::LeftButton);
  QTest::mouseMove(&button, QPoint(200, 200));
  QTest::mouseRelease(&button, Qt::LeftButton, {}, QPoint(200, 200));
  EXPECT_THAT(events, ElementsAre("press", "release"));
  EXPECT_THAT(reports, IsEmpty()) << "released outside: no click";
  Click(button);
  EXPECT_THAT(reports, ElementsAre("F12.DAT: no permission to write"));
}

}  // namespace
}  // namespace velumar
