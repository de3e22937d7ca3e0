#include "app/theme/dress.h"

#include <QApplication>
#include <QIcon>
#include <QToolTip>
#include <utility>

#include "app/theme/artwork.h"
#include "app/theme/form_style.h"

namespace velumar {

namespace {

Theme FirstTheme(ThemeChoice choice, const QPalette& desktop) {
  switch (choice) {
    case ThemeChoice::kLight:
      return Theme::Light();
    case ThemeChoice::kDark:
      return Theme::Dark();
    case ThemeChoice::kSystem:
      break;
  }
  return Theme::Following(desktop);
}

}  // namespace

void DressApplication(const Theme& theme) {
  constexpr int kIconPixels = 192;
  QApplication::setStyle(new FormStyle(theme));
  QApplication::setPalette(theme.Palette());
  QToolTip::setPalette(theme.Palette());
  QApplication::setWindowIcon(
      QIcon(ArtPixmap(theme.ArtSet(), QStringLiteral("velumar"), {kIconPixels, kIconPixels})));
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
  // The desktop's wish comes to the windows where our palette hides it from the application, and
  // our own dressing is none.
  const bool wish = watched->isWindowType() || watched == QCoreApplication::instance();
  if (changed && wish && !looking_) Follow();
  return QObject::eventFilter(watched, event);
}

void ThemeFollower::Follow() {
  looking_ = true;
  const Theme wanted = Theme::Following(desktop_palette_());
  const bool same = wanted.dark == current_.dark;
  if (same) {
    QApplication::setPalette(current_.Palette());
  } else {
    current_ = wanted;
    DressApplication(current_);
  }
  looking_ = false;
  if (!same && change_) change_(current_);
}

}  // namespace velumar
