#pragma once

#include <gtest/gtest.h>

#include <QApplication>
#include <QTest>
#include <string>
#include <vector>

#include "app/theme/form_style.h"
#include "app/windows/desktop_view.h"

namespace velumar {

// A desktop on the screen with no logic behind it but what a test binds.
class ShownDesktop : public ::testing::Test {
 protected:
  ShownDesktop() { QApplication::setStyle(new FormStyle(Theme::Light())); }

  // Windows that were unloaded die before their models.
  ~ShownDesktop() override { QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete); }

  static Appearance Look(const Theme& theme = Theme::Light()) {
    return {theme, Typefaces::Installed(), QStringLiteral("dd/MM/yyyy")};
  }

  FormView& View(Form& form) { return *view.Find(form); }

  template <typename Widget>
  Widget& WidgetOf(Control& control) {
    auto* widget =
        View(control.Owner()).findChild<QWidget*>(QString::fromStdString(control.Name()));
    auto* wanted = dynamic_cast<Widget*>(widget);
    if (wanted == nullptr) throw std::logic_error("no such widget for " + control.Name());
    return *wanted;
  }

  static void Click(QWidget& widget) { QTest::mouseClick(&widget, Qt::LeftButton); }

  Desktop desktop;
  std::vector<std::string> reports;
  DesktopView view{desktop, Look(), [this](const std::string& text) { reports.push_back(text); }};
};

}  // namespace velumar
