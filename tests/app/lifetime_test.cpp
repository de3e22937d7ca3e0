#include <gmock/gmock.h>

#include <QAbstractButton>
#include <QLineEdit>
#include <QPointer>
#include <QTimer>

#include "app/services/event_loop.h"
#include "shown_desktop.h"

namespace velumar {
namespace {

using std::chrono_literals::operator""ms;

class LifetimeTest : public ShownDesktop {
 protected:
  void Settle() {
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  }

  QtEventLoop events;
};

// A run plays inside the click on "Play"; "Close & Return" comes while it waits, unloads the window
// and loads it again for the status line.
TEST_F(LifetimeTest, AnInnerClickMayUnloadTheWindowOfAnOuterOne) {
  Form2& form = desktop.form2();
  form.Show();
  const QPointer<QWidget> window = &View(form);
  auto& close = WidgetOf<QAbstractButton>(form.Image5);
  form.txtRefresh.SetText("4");
  form.Image5.on_click = [&] {
    desktop.Unload(form);
    EXPECT_EQ(view.Find(form), nullptr);
    EXPECT_FALSE(window->isVisible());
    desktop.form2().Label6.SetText("still running");
  };
  form.Image3.on_click = [&] {
    QTimer::singleShot(0, &close, [&] { Click(close); });
    events.WaitFor(10ms);
    events.WaitFor(10ms);
    EXPECT_FALSE(window.isNull()) << "its handler is still on the stack";
  };
  Click(WidgetOf<QAbstractButton>(form.Image3));
  Settle();
  EXPECT_TRUE(window.isNull());
  EXPECT_EQ(form.Label6.Text(), "still running");
  EXPECT_EQ(WidgetOf<QLineEdit>(form.txtRefresh).text(), QStringLiteral("1")) << "as new";
  EXPECT_FALSE(View(form).isVisible());
}

TEST_F(LifetimeTest, EventsOfAnUnloadedWindowAreDropped) {
  Form1& form = desktop.form1();
  form.Show();
  int releases = 0;
  form.Image5.on_press = [&] {
    desktop.Unload(form);
    desktop.form1().Show();
  };
  form.Image5.on_release = [&] { ++releases; };
  Click(WidgetOf<QAbstractButton>(form.Image5));
  EXPECT_EQ(releases, 0) << "the new window was never pressed";
  Settle();
}

// A click that shows the window again, and another start of the program.
TEST_F(LifetimeTest, IconsBecomeWindowsAgain) {
  for (Form* form :
       {static_cast<Form*>(&desktop.form2()), static_cast<Form*>(&desktop.frmResult())}) {
    form->Show();
    View(*form).showMinimized();
    form->Show();
    EXPECT_FALSE(View(*form).isMinimized()) << form->Name();
    View(*form).showMinimized();
  }
  view.Raise();
  EXPECT_FALSE(View(desktop.form2()).isMinimized());
  EXPECT_FALSE(View(desktop.frmResult()).isMinimized());
}

TEST_F(LifetimeTest, ClosingFromOutsideAsksTheModel) {
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
  Settle();
}

}  // namespace
}  // namespace velumar
