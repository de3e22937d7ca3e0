#include <cmath>

#include "app/windows/native_form.h"
#include "platform/windows/native_window.h"

namespace velumar {

namespace {

bool HasNativeWindow(const QWidget& window) {
  return QGuiApplication::platformName() == QLatin1String("windows") && window.isWindow();
}

}  // namespace

// A window has one opacity here, which excludes translucent pixels.
bool WindowsMayBlend() { return false; }

bool SoftCornersShow() { return false; }

void CutCorners(QWidget& window, const QSize& corners) {
  if (!HasNativeWindow(window)) return;
  const double scale = window.devicePixelRatioF();
  const auto pixels = [scale](int logical) {
    return static_cast<int>(std::lround(logical * scale));
  };
  RoundNativeWindow(window.winId(), pixels(window.width()), pixels(window.height()),
                    pixels(corners.width()), pixels(corners.height()));
}

// The toolkit must know the opacity too: it removes the layer of opaque windows.
void SetAlpha(QWidget& window, int alpha) {
  window.setWindowOpacity(alpha / 255.0);
  if (HasNativeWindow(window)) SetNativeAlpha(window.winId(), alpha);
}

void KeepOnTop(QWidget& window) {
  if (HasNativeWindow(window)) KeepNativeOnTop(window.winId());
}

bool MoveWithMouse(QWidget& window) {
  if (!HasNativeWindow(window)) return false;
  DragNativeWindow(window.winId());
  return true;
}

}  // namespace velumar
