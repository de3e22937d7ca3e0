#include "app/theme/theme_follower.h"

#include <QApplication>
#include <QIcon>
#include <QToolTip>
#include <utility>

#include "app/theme/artwork.h"
#include "app/theme/form_style.h"

namespace velumar {

namespace {

Theme FirstTheme(ThemeChoice choice, const QPalette& desktop) {
  if (choice == ThemeChoice::kSystem) return Theme::Following(desktop);
  return choice == ThemeChoice::kDark ? Theme::Dark() : Theme::Light();
}

}  // namespace

void ApplyTheme(const Theme& theme) {
  constexpr int kIconPixels = 192;
  QApplication::setStyle(new FormStyle(theme));
  QApplication::setPalette(theme.Palette());
  QToolTip::setPalette(theme.Palette());
  QApplication::setWindowIcon(
      QIcon(ArtPixmap(theme, QStringLiteral("velumar"), {kIconPixels, kIconPixels})));
}

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
  const Theme wanted = Theme::Following(desktop_palette_());
  const bool same = wanted.dark == current_.dark;
  if (same) {
    QApplication::setPalette(current_.Palette());
  } else {
    current_ = wanted;
    ApplyTheme(current_);
  }
  following_ = false;
  if (!same && change_) change_(current_);
}

}  // namespace velumar
