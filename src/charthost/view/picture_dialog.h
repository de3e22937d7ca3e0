#pragma once

class QWidget;

namespace velumar {

class ChartPane;

// Puts the chart on the clipboard as a picture.
void CopyPicture(ChartPane& chart);

// Asks where to save a picture of the chart, and in which format. The dialog is not modal, since
// keys from outside may arrive at any time. If saving fails, a box says why.
void AskForPictureFile(ChartPane& chart, QWidget& parent);

}  // namespace velumar
