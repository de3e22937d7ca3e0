#include <QAbstractButton>
#include <QAccessible>
#include <QDragEnterEvent>
#include <QLineEdit>
#include <QMimeData>
#include <QPointer>
#include <QTimer>
#include <QWindow>
#include <map>
#include <set>

#include "app/services/event_loop.h"
#include "app/theme/theme_follower.h"
#include "shown_desktop.h"

namespace velumar {
namespace {

using std::chrono_literals::operator""ms;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class WindowsTest : public ShownDesktop {
 protected:
  // The names of the controls that Tab visits, once around; at most 50.
  std::vector<std::string> TabOrder(Form& form) {
    QWindow* const window = Activate(form).windowHandle();
    std::vector<std::string> names;
    const QWidget* const first = QApplication::focusWidget();
    do {
      const std::string name = QApplication::focusWidget()->objectName().toStdString();
      if (names.empty() || names.back() != name) names.push_back(name);  // day, month, year
      QTest::keyClick(window, Qt::Key_Tab);
    } while (QApplication::focusWidget() != first && names.size() < 50);
    return names;
  }
  // The mean lightness of a window as it is drawn.
  int Lightness(Form& form) {
    const QImage drawn = View(form).grab().toImage();
    return drawn.scaled(1, 1, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
        .pixelColor(0, 0)
        .lightness();
  }
};

TEST_F(WindowsTest, WindowAndModelFollowEachOther) {
  Form2& form = desktop.form2();
  form.SetLeft(1500);
  form.SetTop(3000);
  form.Show();
  FormView& window = View(form);
  EXPECT_EQ(window.pos(), QPoint(100, 200));
  EXPECT_EQ(window.size(), QSize(281, 77));
  form.SetTop(3052);  // 203.47 pixels
  EXPECT_EQ(window.pos(), QPoint(100, 203));
  EXPECT_EQ(form.Top(), 3052) << "the rounded place doesn't come back";
  window.move(120, 220);  // a late report of an earlier place, or a move by the window manager
  EXPECT_EQ(form.Top(), 3052);
  QTest::qWait(350);
  window.move(130, 240);  // by the user
  EXPECT_EQ(form.Left(), 130 * 15);
  EXPECT_EQ(form.Top(), 240 * 15);
}

TEST_F(WindowsTest, OnlyWindowsWithControlsTakeTheFocus) {
  for (Form* form : desktop.All()) {
    if (!form->Loaded()) form->BeLoaded();
    form->SetTopmost(true);
    form->Show();
    const FormView& window = View(*form);
    const bool number = form->Name().starts_with("frmBig");
    EXPECT_TRUE(window.isVisible()) << form->Name();
    EXPECT_NE(window.windowFlags().testFlag(Qt::FramelessWindowHint), form->Bordered());
    EXPECT_TRUE(window.windowFlags().testFlag(Qt::WindowStaysOnTopHint)) << form->Name();
    EXPECT_EQ(window.windowFlags().testFlag(Qt::WindowDoesNotAcceptFocus), number);
    EXPECT_EQ(window.testAttribute(Qt::WA_ShowWithoutActivating), number) << form->Name();
    // The program gives the focus back by title, so only windows that deal may have this one.
    EXPECT_EQ(window.windowTitle().startsWith(QStringLiteral("Velumar")),
              !number && !form->Bordered())
        << form->Name();
  }
}

TEST_F(WindowsTest, CornersAreRoundAndOpacityIsTheModels) {
  Form2& form = desktop.form2();
  form.SetCorners(15, 12);
  form.SetOpacity(51);
  form.Show();
  EXPECT_NEAR(View(form).windowOpacity(), 0.2, 0.005);
  const QImage picture = View(form).grab().toImage();
  EXPECT_EQ(picture.pixelColor(0, 0).alpha(), 0) << "the corner of the backdrop is cut off too";
  EXPECT_EQ(picture.pixelColor(picture.width() / 2, picture.height() - 4).alpha(), 255);
}

TEST_F(WindowsTest, AnyMouseButtonPressesTheBackground) {
  Form2& form = desktop.form2();
  form.Show();
  std::vector<std::string> presses;
  form.Image8.on_press = [&] { presses.emplace_back("backdrop"); };
  form.on_press = [&] { presses.emplace_back("window"); };
  QTest::mousePress(&WidgetOf(form.Image8), Qt::RightButton);
  QTest::mousePress(&WidgetOf(form.Label6), Qt::MiddleButton);  // passes through to the window
  EXPECT_THAT(presses, ElementsAre("backdrop", "window"));
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
  EXPECT_TRUE(enter.isAccepted());
  QDropEvent drop(QPointF(50, 50), Qt::CopyAction, &files, Qt::LeftButton, {});
  QApplication::sendEvent(&View(form), &drop);
  EXPECT_THAT(dropped, IsEmpty());
  QApplication::processEvents();
  EXPECT_THAT(dropped, ElementsAre("/prices/\u00c4BC_D.csv", "/prices/second.csv"));
}

// A run plays inside the click on "Play". "Close & Return" arrives while it waits, unloads the
// window, and loads it again for the status line.
TEST_F(WindowsTest, AnInnerClickMayUnloadTheWindowOfAnOuterOne) {
  Form2& form = desktop.form2();
  form.Show();
  const QPointer<QWidget> window = &View(form);
  QWidget& close = WidgetOf(form.Image5);
  form.txtRefresh.SetText("4");
  form.Image5.on_click = [&] {
    desktop.Unload(form);
    EXPECT_EQ(view.Find(form), nullptr);
    EXPECT_FALSE(window->isVisible());
    desktop.form2().Label6.SetText("still running");
  };
  QtEventLoop events;
  form.Image3.on_click = [&] {
    QTimer::singleShot(0, &close, [&] { Click(close); });
    events.WaitFor(10ms);
    events.WaitFor(10ms);
    EXPECT_FALSE(window.isNull()) << "its handler is still running";
  };
  Click(WidgetOf(form.Image3));
  Settle();
  EXPECT_TRUE(window.isNull());
  EXPECT_EQ(form.Label6.Text(), "still running");
  EXPECT_EQ(WidgetOf<QLineEdit>(form.txtRefresh).text(), QStringLiteral("1")) << "a new window";
  EXPECT_FALSE(View(form).isVisible());
}

TEST_F(WindowsTest, EventsForAnUnloadedWindowAreDropped) {
  Form1& form = desktop.form1();
  form.Show();
  int releases = 0;
  form.Image5.on_press = [&] {
    desktop.Unload(form);
    desktop.form1().Show();
  };
  form.Image5.on_release = [&] { ++releases; };
  Click(WidgetOf(form.Image5));
  EXPECT_EQ(releases, 0) << "the new window was never pressed";
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

TEST_F(WindowsTest, ClosingFromOutsideAsksTheModel) {
  Form1& form = desktop.form1();
  form.Show();
  int asked = 0;
  form.on_close = [&] { ++asked; };
  View(form).close();
  EXPECT_EQ(asked, 1);
  EXPECT_TRUE(View(form).isVisible());
  form.on_close = [&] { desktop.Unload(form); };
  View(form).close();
  EXPECT_EQ(view.Find(form), nullptr);
}

TEST_F(WindowsTest, AllWindowsFollowTheDesktopUnlessAThemeWasChosen) {
  QPalette palette(Qt::white);
  const auto turn_to = [&](Qt::GlobalColor window) {
    palette = QPalette(window);
    QEvent change(QEvent::ThemeChange);
    QCoreApplication::sendEvent(View(desktop.form1()).windowHandle(), &change);
  };
  const auto is_dark = [this](Form& form) { return View(form).Context().Look().theme.dark; };
  ThemeFollower follower(ThemeChoice::kSystem, [&] { return palette; });
  follower.OnChange([this](const Theme& theme) { view.SetTheme(theme); });
  desktop.form1().Show();
  const int light = Lightness(desktop.form1());

  turn_to(Qt::black);
  EXPECT_LT(Lightness(desktop.form1()), light - 40);
  desktop.form2().Show();
  EXPECT_TRUE(is_dark(desktop.form2()));
  EXPECT_LT(QApplication::palette().color(QPalette::Base).lightness(), 80) << "dialogs too";

  turn_to(Qt::white);
  EXPECT_EQ(Lightness(desktop.form1()), light);
  EXPECT_FALSE(is_dark(desktop.form2()));

  const ThemeFollower chosen(ThemeChoice::kLight, [&] { return palette; });
  turn_to(Qt::black);
  EXPECT_FALSE(chosen.Current().dark);
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

// From the first box to the picture buttons in the title, each once.
TEST_F(WindowsTest, TabVisitsEachControlOnce) {
  const std::map<Form*, std::pair<std::string, std::string>> ends = {
      {&desktop.form1(), {"Text3", "imgGraph"}},
      {&desktop.form2(), {"HScrollx", "Image7"}},
      {&desktop.form3(), {"HScrollx", "chkShowBigform"}}};
  for (const auto& [form, end] : ends) {
    form->Show();
    const std::vector<std::string> order = TabOrder(*form);
    EXPECT_EQ(order.front(), end.first);
    EXPECT_EQ(order.back(), end.second);
    EXPECT_EQ(std::set<std::string>(order.begin(), order.end()).size(), order.size());
    for (const Control* control : form->Controls()) {
      if (control->Kind() != ControlKind::kPictureButton || !control->Visible()) continue;
      EXPECT_THAT(order, testing::Contains(control->Name()));
    }
  }
}

}  // namespace
}  // namespace velumar
