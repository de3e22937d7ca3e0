#pragma once

#include <QLineEdit>

namespace velumar {

// A line edit that shows all of its text: the font shrinks, and a text that is too long even then
// is elided in the middle while nobody is typing.
class FittingLineEdit : public QLineEdit {
 public:
  explicit FittingLineEdit(QWidget* parent = nullptr);

  // The font for texts that fit.
  void SetFullFont(const QFont& font);
  // Leaves the cursor where it is, as far as the text goes.
  void SetShownText(const QString& text);
  // True if the line can't show all of the text.
  bool Overflows() const { return fontMetrics().horizontalAdvance(text()) > TextRoom().width(); }
  // The tooltip, followed by a line with the full text if the box can't show it.
  QString ToolTipFor(const QString& tip) const {
    return Overflows() ? tip + QLatin1Char('\n') + text() : tip;
  }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override {
    QLineEdit::resizeEvent(event);
    FitFont();
  }

 private:
  static constexpr int kMargin = 3;  // between the edge of the line and its text

  QRect TextRoom() const { return rect().adjusted(kMargin, 0, -kMargin, 0); }
  void FitFont();

  QFont full_font_;
};

}  // namespace velumar
