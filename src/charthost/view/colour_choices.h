#pragma once

#include <QColor>
#include <QIcon>
#include <QString>
#include <array>

class QComboBox;
class QWidget;

namespace velumar {

// The colours that a trader chooses from: those of Palette::indicators, by their index.

std::array<QString, 8> ColourNames();
const QColor& ChosenColour(int colour, const QWidget& widget);
// A small square, in the resolution of the widget's screen.
QIcon ColourIcon(int colour, const QWidget& widget);
// Makes them the entries of the box.
void FillColours(QComboBox& box);

}  // namespace velumar
