#include "app/services/qt_message_boxes.h"

#include <QMessageBox>
#include <QPushButton>
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

void Dress(QMessageBox& box) {
  box.setWindowFlag(Qt::WindowStaysOnTopHint);
  box.setTextFormat(Qt::PlainText);
  box.setTextInteractionFlags(Qt::TextSelectableByMouse);
}

}  // namespace

void QtMessageBoxes::Show(std::string_view text, BoxIcon icon) {
  ShowTitled("Velumar", text, icon);
}

void QtMessageBoxes::ShowTitled(std::string_view title, std::string_view text, BoxIcon icon) {
  QMessageBox box(QtIcon(icon), QString::fromUtf8(title), QString::fromUtf8(text), QMessageBox::Ok);
  Dress(box);
  box.exec();
}

std::size_t QtMessageBoxes::Ask(std::string_view text, const std::vector<std::string>& answers) {
  QMessageBox box(QMessageBox::Question, QStringLiteral("Velumar"), QString::fromUtf8(text));
  std::vector<QAbstractButton*> buttons;
  buttons.reserve(answers.size());
  for (const std::string& answer : answers) {
    buttons.push_back(box.addButton(QString::fromUtf8(answer), QMessageBox::ActionRole));
  }
  auto* const least = static_cast<QPushButton*>(buttons.back());
  box.setDefaultButton(least);
  box.setEscapeButton(least);
  Dress(box);
  box.exec();
  const auto clicked = std::find(buttons.begin(), buttons.end(), box.clickedButton());
  return clicked == buttons.end() ? answers.size() - 1
                                  : static_cast<std::size_t>(clicked - buttons.begin());
}

}  // namespace velumar
