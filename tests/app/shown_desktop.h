#pragma once

#include <QApplication>
#include <QTest>

#include "app/windows/desktop_view.h"
#include "ledger/ledger.h"
#include "marketdata/index_cache.h"
#include "platform/virtual_platform.h"
#include "shell/program.h"
#include "support/matchers.h"

namespace velumar {

// A desktop on the screen, with no logic except what a test binds.
struct ShownDesktop : testing::Test {
  ShownDesktop() { ApplyTheme(Palette::Light()); }

  // Deletes unloaded windows before their models.
  ~ShownDesktop() override { Settle(); }

  static void Settle() {
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  }

  FormView& View(Form& form) { return *view.Find(form); }

  // Gives the window the focus, as a click on it does.
  FormView& Activate(Form& form) {
    QApplication::setActiveWindow(&View(form));
    return View(form);
  }

  void ShowAll() {
    for (Form* form : desktop.All()) {
      desktop.Load(*form);
      form->Show();
    }
  }

  template <typename Widget = QWidget>
  Widget& WidgetOf(Control& control) {
    auto* widget =
        View(control.Owner()).findChild<QWidget*>(QString::fromStdString(control.Name()));
    auto* wanted = dynamic_cast<Widget*>(widget);
    if (wanted == nullptr) throw std::logic_error("no such widget for " + control.Name());
    return *wanted;
  }

  static void Click(QWidget& widget) { QTest::mouseClick(&widget, Qt::LeftButton); }

  // Turns the wheel above the middle of the widget; away from the user is positive.
  static void Roll(QWidget& widget, int notches) {
    const QPoint middle = widget.rect().center();
    QWheelEvent wheel(middle, widget.mapToGlobal(middle), {}, {0, 120 * notches}, Qt::NoButton, {},
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(&widget, &wheel);
  }

  Desktop desktop;
  std::vector<std::string> reports;
  DesktopView view{desktop,
                   {Palette::Light(), Typefaces::Installed(), QStringLiteral("dd/MM/yyyy")},
                   [this](const std::string& text) { reports.push_back(text); }};
};

// The whole program in these windows, with nothing real outside them.
struct ShownProgram : ShownDesktop {
  VirtualPlatform world;
  Platform platform = world.References();
  SimSession session;
  IndexCache cache;
  LedgerConnection ledger{[](std::string_view date) { return std::string(date); }};
  Program program{session, desktop, platform, cache, ledger};
};

}  // namespace velumar
