#include "app/theme/theme_follower.h"

#include <QWindow>

#include "app/shown_desktop.h"

namespace velumar {
namespace {

// A desktop whose colours a test changes, as a trader does in the middle of a run.
class DressTest : public ShownDesktop {
 protected:
  void TurnTo(Qt::GlobalColor window) {
    palette = QPalette(window);
    QEvent told(QEvent::ThemeChange);
    QCoreApplication::sendEvent(View(desktop.form1()).windowHandle(), &told);
  }
  // The mean lightness of a window as it is drawn.
  int Lightness(Form& form) {
    const QImage drawn = View(form).grab().toImage();
    return drawn.scaled(1, 1, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
        .pixelColor(0, 0)
        .lightness();
  }

  QPalette palette{Qt::white};
};

TEST_F(DressTest, AllWindowsFollowTheDesktopUnlessAThemeWasChosen) {
  ThemeFollower follower(ThemeChoice::kSystem, [this] { return palette; });
  follower.OnChange([this](const Theme& theme) { view.SetTheme(theme); });
  desktop.form1().Show();
  const int light = Lightness(desktop.form1());

  TurnTo(Qt::black);
  const int dark = Lightness(desktop.form1());
  EXPECT_LT(dark, light - 40);
  desktop.form2().Show();
  EXPECT_TRUE(View(desktop.form2()).Context().Look().theme.dark);
  EXPECT_LT(QApplication::palette().color(QPalette::Base).lightness(), 80) << "dialogs too";

  TurnTo(Qt::white);
  EXPECT_EQ(Lightness(desktop.form1()), light);
  EXPECT_FALSE(View(desktop.form2()).Context().Look().theme.dark);

  ThemeFollower chosen(ThemeChoice::kLight, [this] { return palette; });
  TurnTo(Qt::black);
  EXPECT_FALSE(chosen.Current().dark);
}

}  // namespace
}  // namespace velumar
