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
  bool Overflows() const;
  // The tooltip, followed by a line with the full text if the box can't show it.
  QString ToolTipFor(const QString& tip) const;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  static constexpr int kMargin = 3;  // between the edge of the line and its text

  QRect TextRoom() const;
  void FitFont();

  QFont full_font_;
};

}  // namespace velumar
