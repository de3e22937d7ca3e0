#include "app/theme/theme_follower.h"

#include <QApplication>

namespace velumar {

namespace {

Palette FirstTheme(ThemeChoice choice, const QPalette& desktop) {
  if (choice == ThemeChoice::kSystem) return Palette::Following(desktop);
  return choice == ThemeChoice::kDark ? Palette::Dark() : Palette::Light();
}

}  // namespace

QPalette DesktopPalette() {
  QApplication::setPalette(QPalette());
  return QApplication::palette();
}

ThemeFollower::ThemeFollower(ThemeChoice choice, std::function<QPalette()> desktop_palette)
    : desktop_palette_(std::move(desktop_palette)),
      current_(FirstTheme(choice, desktop_palette_())) {
  if (choice == ThemeChoice::kSystem) QCoreApplication::instance()->installEventFilter(this);
}

bool ThemeFollower::eventFilter(QObject* watched, QEvent* event) {
  const bool changed =
      event->type() == QEvent::ThemeChange || event->type() == QEvent::ApplicationPaletteChange;
  // While our palette hides the desktop's from the application, only windows get the event. Our own
  // changes of the palette don't count.
  const bool from_desktop = watched->isWindowType() || watched == QCoreApplication::instance();
  if (changed && from_desktop && !following_) Follow();
  return QObject::eventFilter(watched, event);
}

void ThemeFollower::Follow() {
  following_ = true;
  const Palette wanted = Palette::Following(desktop_palette_());
  const bool same = wanted.dark == current_.dark;
  if (same) {
    QApplication::setPalette(current_.ForWidgets());
  } else {
    current_ = wanted;
    ApplyTheme(current_);
  }
  following_ = false;
  if (!same && change_) change_(current_);
}

}  // namespace velumar
