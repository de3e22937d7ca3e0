#include <QtWidgets>
#include <set>

#include "app/controls/label_view.h"
#include "app/controls/text_box.h"
#include "app/services/desktop_services.h"
#include "app/theme/theme.h"
#include "resultchart/result_plot.h"
#include "shown_desktop.h"

namespace velumar {
namespace {

using std::chrono_literals::operator""ms;

using WindowsTest = ShownDesktop;

TEST_F(WindowsTest, WindowAndModelFollowEachOther) {
  Form2& form = desktop.form2();
  form.SetLeft(1500);
  form.SetTop(3000);
  form.SetCorners(15, 12);
  form.SetOpacity(200);
  form.Show();
  FormView& window = View(form);
  EXPECT_EQ(window.pos(), QPoint(100, 200));
  EXPECT_EQ(window.size(), QSize(281, 77));
  EXPECT_NEAR(window.windowOpacity(), 200 / 255.0, 0.01);
  form.SetTop(3052);  // 203.47 pixels
  EXPECT_EQ(window.pos(), QPoint(100, 203));
  EXPECT_EQ(form.Top(), 3052) << "the rounded place doesn't come back";
  window.move(120, 220);  // a late report of an earlier place, or a move by the window manager
  EXPECT_EQ(form.Top(), 3052);
  QTest::qWait(350);
  window.move(130, 240);  // by the user
  EXPECT_EQ(form.Left(), 130 * 15);
  EXPECT_EQ(form.Top(), 240 * 15);
  const QImage picture = window.grab().toImage();
  EXPECT_EQ(picture.pixelColor(0, 0).alpha(), 0) << "the corner of the backdrop is cut off too";
}

TEST_F(WindowsTest, OnlyWindowsWithControlsTakeTheFocus) {
  ShowAll();
  for (Form* form : desktop.All()) {
    const FormView& window = View(*form);
    const bool number = form->Name().starts_with("frmBig");
    EXPECT_EQ(window.windowFlags().testFlag(Qt::WindowDoesNotAcceptFocus), number);
    EXPECT_EQ(window.testAttribute(Qt::WA_ShowWithoutActivating), number) << form->Name();
    // The program gives the focus back by title, so only windows that deal may have this one.
    EXPECT_EQ(window.windowTitle().startsWith(QStringLiteral("Velumar")),
              !number && !form->Bordered())
        << form->Name();
  }
}

TEST_F(WindowsTest, TheListHasTheKeysWhenThePracticeWindowOpens) {
  FrmPractice& form = desktop.frmPractice();
  form.Show();
  EXPECT_EQ(View(form).focusWidget(), &WidgetOf<QTableView>(form.lstSessions));
}

TEST_F(WindowsTest, DroppedFilesReachTheModelAfterTheDrop) {
  Form1& form = desktop.form1();
  form.Show();
  std::vector<std::string> dropped;
  form.on_drop = [&](const std::vector<std::string>& files) { dropped = files; };
  QMimeData files;
  files.setUrls({QUrl::fromLocalFile(QStringLiteral("/prices/\u00c4BC_D.csv")),
                 QUrl(QStringLiteral("https://example.org/x.csv")),
                 QUrl::fromLocalFile(QStringLiteral("/prices/second.csv"))});
  QDragEnterEvent enter(QPoint(50, 50), Qt::CopyAction, &files, Qt::LeftButton, {});
  QApplication::sendEvent(&View(form), &enter);
  QDropEvent drop(QPointF(50, 50), Qt::CopyAction, &files, Qt::LeftButton, {});
  QApplication::sendEvent(&View(form), &drop);
  EXPECT_THAT(dropped, IsEmpty());
  QApplication::processEvents();
  EXPECT_THAT(dropped, ElementsAre("/prices/\u00c4BC_D.csv", "/prices/second.csv"));
  for (const QLineEdit* const line : View(form).findChildren<QLineEdit*>()) {
    EXPECT_FALSE(line->acceptDrops()) << "the box would take the names of the files";
  }
}

// A run plays inside the click on "Play". "Close & Return" arrives while it waits, unloads the
// window, and loads it again for the status line.
TEST_F(WindowsTest, AnInnerPressMayUnloadTheWindowOfAnOuterClick) {
  Form2& form = desktop.form2();
  form.Show();
  const QPointer<QWidget> window = &View(form);
  QWidget& close = WidgetOf(form.Image5);
  form.txtRefresh.SetText("4");
  form.Image5.on_release = [] { ADD_FAILURE() << "the new window was never pressed"; };
  form.Image5.on_press = [&] {
    desktop.Unload(form);
    EXPECT_EQ(view.Find(form), nullptr);
    EXPECT_FALSE(window->isVisible());
    desktop.form2().Label6.SetText("still running");
  };
  const auto events = WindowEvents();
  form.Image3.on_click = [&] {
    QTimer::singleShot(0, &close, [&] { Click(close); });
    events->WaitFor(10ms);
    events->WaitFor(10ms);
    EXPECT_FALSE(window.isNull()) << "its handler is still running";
  };
  Click(WidgetOf(form.Image3));
  Settle();
  EXPECT_TRUE(window.isNull());
  EXPECT_EQ(form.Label6.Text(), "still running");
  EXPECT_EQ(WidgetOf<QLineEdit>(form.txtRefresh).text(), QStringLiteral("1")) << "a new window";
  EXPECT_FALSE(View(form).isVisible());
}

// By a click that shows the window again, and by another start of the program.
TEST_F(WindowsTest, MinimisedWindowsAreRestored) {
  Form* const forms[] = {&desktop.form2(), &desktop.frmResult()};
  for (Form* form : forms) {
    form->Show();
    View(*form).showMinimized();
    form->Show();
    EXPECT_FALSE(View(*form).isMinimized()) << form->Name();
    View(*form).showMinimized();
  }
  view.Raise();
  for (Form* form : forms) EXPECT_FALSE(View(*form).isMinimized()) << form->Name();
}

TEST_F(WindowsTest, AllWindowsFollowTheDesktopUnlessAThemeWasChosen) {
  Form& form = desktop.form1();
  form.Show();
  desktop.form2().Show();
  FrmResult& result = desktop.frmResult();
  result.Show();
  result.progress.pltProgress.SetVisible(true);
  QPalette palette(Qt::white);
  ThemeFollower follower(ThemeChoice::kSystem, [&] { return palette; });
  follower.OnChange([this](const Palette& theme) { view.SetTheme(theme); });
  const ThemeFollower chosen(ThemeChoice::kLight, [&] { return palette; });
  const QImage light = View(form).grab().toImage();
  for (const Qt::GlobalColor desktop_colour : {Qt::black, Qt::white}) {
    palette = QPalette(desktop_colour);
    QEvent change(QEvent::ThemeChange);
    QCoreApplication::sendEvent(View(form).windowHandle(), &change);
    const bool dark = desktop_colour == Qt::black;
    EXPECT_EQ(View(form).grab().toImage() == light, !dark);
    EXPECT_EQ(View(desktop.form2()).Context().Look().palette.dark, dark);
    for (Control* const chart :
         std::initializer_list<Control*>{&result.MSChart1, &result.progress.pltProgress}) {
      auto& plot = WidgetOf<QCustomPlot>(*chart);
      plot.replot();
      const QColor corner = plot.grab().toImage().pixelColor(2, 2);
      EXPECT_EQ(corner.lightness() < 128, dark) << chart->Name();
    }
    desktop.Unload(desktop.form3());
    EXPECT_EQ(View(desktop.form3()).Context().Look().palette.dark, dark) << "opened later";
    EXPECT_EQ(QApplication::palette().color(QPalette::Base).lightness() < 80, dark) << "dialogs";
    EXPECT_FALSE(chosen.Current().dark);
  }
}

TEST_F(WindowsTest, ScreenReadersFindANameForEachControl) {
  const std::set<ControlKind> kinds = {
      ControlKind::kPictureButton, ControlKind::kButton,   ControlKind::kLabel,
      ControlKind::kTextBox,       ControlKind::kComboBox, ControlKind::kDatePicker,
      ControlKind::kSlider,        ControlKind::kCheckBox, ControlKind::kProgressLine};
  ShowAll();
  for (Form* form : desktop.All()) {
    std::set<QString> names;
    for (Control* control : form->Controls()) {
      if (!kinds.contains(control->Kind())) continue;
      // Their tooltips are set when their window opens.
      if (control->Name() == "Image6" || control->Name() == "Image7") continue;
      if (control->Kind() == ControlKind::kLabel) control->SetText(control->Name() + " shows");
      const auto* const seen = QAccessible::queryAccessibleInterface(&WidgetOf(*control));
      ASSERT_NE(seen, nullptr);
      EXPECT_NE(seen->role(), QAccessible::Client) << form->Name() << "." << control->Name();
      const QString name = seen->text(QAccessible::Name);
      EXPECT_FALSE(name.isEmpty()) << form->Name() << "." << control->Name();
      EXPECT_TRUE(names.insert(name).second) << control->Name() << ": " << name.toStdString();
    }
  }
}

struct TextFitTest : ShownDesktop {
  void ExpectReadable(Control& label) {
    const auto& widget = WidgetOf<LabelView>(label);
    const FittedText& fitted = widget.Fitted();
    const QRectF ink = QFontMetricsF(fitted.font).tightBoundingRect(fitted.shown);
    const QRect place = LogicalPlace(label);
    // The lines that change with each bar are elided before they are too small to read at a glance.
    const bool status = label.DesignLook().backdrop == Backdrop::kWhitePaper;
    EXPECT_FALSE(fitted.shortened && !status);
    EXPECT_LE(ink.width(), place.width());
    if (fitted.shown.trimmed().isEmpty()) return;
    const double baseline = Baseline(label, fitted.font, fitted.shown);
    EXPECT_GE(baseline + ink.top(), place.top() - 0.5);
    EXPECT_LE(baseline + ink.bottom(), place.top() + place.height() + 0.5);
    EXPECT_GE(fitted.font.pixelSize(), status ? 10 : kSmallestPixelSize);
    if (label.DesignLook().backdrop != Backdrop::kNone) return;
    const FormContext& context = View(label.Owner()).Context();
    const QColor background = label.Container() == nullptr ? context.BackgroundAt(widget.geometry())
                                                           : context.Look().palette.field;
    const QColor colour = ToQColor(label.ForeColour());
    EXPECT_GE(Contrast(background, ReadableOn(background, colour)), 4.4);
  }
};

TEST_F(TextFitTest, NoTextIsCutOrUnreadableAndNoPictureIsMissing) {
  ShowAll();
  view.SetTheme(Palette::Dark());
  desktop.form2().Label6.SetText("SET50-FUT 10/18/2007 16:00:00 O:12,345.5 H:12,350 L:12,340");
  desktop.form3().Label6.SetText("( L=999999999 Avg=999,999.25 )  ( S=999999999 Avg= 1,234.5 ) ");
  desktop.form3().lblinfo.SetText("Initial Margin [999,999,999]   Porfolio [-999,999,999]");
  desktop.frmBigScore().lblScore.SetText("-999,999,999");
  desktop.frmBigPrice().lblScore.SetText("O: 123,456.75 H: 123,456.75 L: 123,456.75 C: 123,456.75");
  for (Form* form : desktop.All()) {
    for (Control* control : form->Controls()) {
      if (control->Kind() != ControlKind::kPicture) continue;
      control->SetSize(form->Width(), form->Height());
    }
    for (Control* control : form->Controls()) {
      SCOPED_TRACE(form->Name() + "." + control->Name() + ": " + control->Text());
      const ControlKind kind = control->Kind();
      if (kind == ControlKind::kLabel) ExpectReadable(*control);
      if (kind != ControlKind::kPicture && kind != ControlKind::kPictureButton) continue;
      for (const Palette& theme : {Palette::Light(), Palette::Dark()}) {
        EXPECT_FALSE(ArtPixmap(theme, ToQt(control->Text()), QSize(101, 97)).isNull());
      }
    }
  }
}

TEST_F(TextFitTest, TheTooltipHasAllOfATextThatIsTooLong) {
  const std::string text = "The chart program " + std::string(300, 'm') + " the end";
  desktop.form2().Label6.SetToolTip("status");
  desktop.form2().Label6.SetText(text);
  const auto& label = WidgetOf<LabelView>(desktop.form2().Label6);
  EXPECT_TRUE(label.Fitted().shown.startsWith(QStringLiteral("The chart")));
  EXPECT_TRUE(label.Fitted().shown.endsWith(QChar(0x2026)));
  EXPECT_EQ(label.toolTip().toStdString(), "status\n" + text);

  Form1& form = desktop.form1();
  for (TextBox* box : {&form.txtcomm, &form.txtInitPorfolio, &form.txtContractValue,
                       &form.txtProfitperContract, &desktop.form3().txtContractVol}) {
    box->SetText("999,999,999");
    EXPECT_FALSE(WidgetOf<FittingLineEdit>(*box).Overflows()) << box->Name();
  }
  form.Text3.SetText(text);
  EXPECT_TRUE(WidgetOf<FittingLineEdit>(form.Text3).Overflows());
  EXPECT_EQ(WidgetOf(form.Text3).toolTip().toStdString(), form.Text3.ToolTip() + "\n" + text);
}

}  // namespace
}  // namespace velumar
