#include "app/qt_screen.h"

#include <QGuiApplication>
#include <QScreen>

#include "forms/form.h"

namespace velumar {

float QtScreen::WidthTwips() const {
  return static_cast<float>(QGuiApplication::primaryScreen()->geometry().width()) * kTwipsPerPixel;
}

float QtScreen::HeightTwips() const {
  return static_cast<float>(QGuiApplication::primaryScreen()->geometry().height()) * kTwipsPerPixel;
}

}  // namespace velumar
