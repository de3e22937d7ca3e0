#pragma once

#include <QLineEdit>

namespace velumar {

// A line that shows all of its text: the font shrinks, and while nobody types into a line too long
// even for that, its middle gives way to an ellipsis.
class FittingLineEdit : public QLineEdit {
 public:
  explicit FittingLineEdit(QWidget* parent = nullptr);

  // The largest font that the line may have.
  void SetFullFont(const QFont& font);
  // The cursor stays where it is, as far as the text goes.
  void SetShownText(const QString& text);
  // True when the line can't show the whole text.
  bool Overflows() const;
  // The tooltip with the whole text as a second line where the line can't show it.
  QString ToolTipFor(const QString& tip) const;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  QRect TextRoom() const;
  void FitFont();

  QFont full_font_;
};

}  // namespace velumar
