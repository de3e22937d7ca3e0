#pragma once

#include <QWidget>
#include <vector>

#include "charts/palette.h"

namespace velumar {

struct ReadoutItem {
  QString label;
  QString value;
  QColor colour;  // of the value
  bool bold = false;
};

// Values next to each other, in as many rows as the width needs: nothing is ever cut off. Each
// place keeps its widest width so far, so that values don't jump while the pointer moves.
class ReadoutBar : public QWidget {
  Q_OBJECT

 public:
  explicit ReadoutBar(QWidget* parent);

  void SetColours(const Palette& colours);
  void SetItems(std::vector<ReadoutItem> items);
  void PaintTo(QPainter& painter) const;
  // For another series, whose values may be narrower.
  void ForgetWidths() { widths_.clear(); }

  QSize minimumSizeHint() const override;
  bool hasHeightForWidth() const override { return true; }
  int heightForWidth(int width) const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  QFont ValueFont(const ReadoutItem& item) const;
  int ItemWidth(const ReadoutItem& item) const;
  // The top left corner of each item in a bar of that width.
  std::vector<QPoint> Places(int width) const;
  int RowHeight() const;
  void FitHeight();

  const Palette* colours_;
  std::vector<ReadoutItem> items_;
  std::vector<int> widths_;
};

}  // namespace velumar
