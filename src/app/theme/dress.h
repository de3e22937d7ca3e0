#pragma once

#include <QObject>
#include <QPalette>
#include <functional>

#include "app/theme/theme.h"
#include "app/wiring/options.h"

namespace velumar {

// Gives the whole application the colours of a theme: boxes, dialogs, tooltips and the icon.
void DressApplication(const Theme& theme);

// What the desktop asks for. Takes our palette off the application, which hides it; the next
// dressing sets it again.
QPalette DesktopPalette();

// The theme that was chosen, and for "system" the one that the desktop's own colours call for. It
// is to be made before the application is dressed.
class ThemeFollower : public QObject {
 public:
  explicit ThemeFollower(ThemeChoice choice,
                         std::function<QPalette()> desktop_palette = DesktopPalette);

  const Theme& Current() const { return current_; }
  // Called with the new theme, after the application is dressed in it, whenever the desktop goes
  // from light to dark or back.
  void OnChange(std::function<void(const Theme& theme)> change) { change_ = std::move(change); }

  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void Follow();

  std::function<QPalette()> desktop_palette_;
  Theme current_;
  std::function<void(const Theme& theme)> change_;
  bool looking_ = false;
};

}  // namespace velumar
