#include "app/qt_message_boxes.h"

#include <QLabel>
#include <QMessageBox>
#include <algorithm>

namespace velumar {

namespace {

QMessageBox::Icon QtIcon(BoxIcon icon) {
  switch (icon) {
    case BoxIcon::kInformation:
      return QMessageBox::Information;
    case BoxIcon::kExclamation:
      return QMessageBox::Warning;
    case BoxIcon::kNone:
      break;
  }
  return QMessageBox::NoIcon;
}

// Short texts stand on one line, long ones break at a width that reads well.
void WrapLongText(QMessageBox& box) {
  constexpr int kLineWidth = 420;
  auto* label = box.findChild<QLabel*>(QStringLiteral("qt_msgbox_label"));
  if (label == nullptr) return;
  label->setWordWrap(true);
  int widest = 0;
  for (const QString& line : box.text().split(QLatin1Char('\n'))) {
    widest = std::max(widest, label->fontMetrics().horizontalAdvance(line));
  }
  label->setMinimumWidth(std::min(widest + 8, kLineWidth));
}

}  // namespace

void QtMessageBoxes::Show(std::string_view text, BoxIcon icon) {
  QMessageBox box(QtIcon(icon), QStringLiteral("Velumar"),
                  QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())),
                  QMessageBox::Ok);
  box.setWindowFlag(Qt::WindowStaysOnTopHint);
  box.setTextFormat(Qt::PlainText);
  box.setTextInteractionFlags(Qt::TextSelectableByMouse);
  WrapLongText(box);
  box.exec();
}

}  // namespace velumar
