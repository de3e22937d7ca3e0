#pragma once

#include <QWidget>
#include <vector>

#include "charthost/view/chart_colors.h"

namespace velumar {

struct ReadoutItem {
  QString label;
  QString value;
  QColor color;  // of the value
  bool bold = false;
};

// Values side by side, over as many rows as the width needs: nothing is ever cut. Each place keeps
// the widest width that it has had, so that the values stand still while the pointer moves.
class ReadoutBar : public QWidget {
  Q_OBJECT

 public:
  explicit ReadoutBar(QWidget* parent);

  void SetColors(const ChartColors& colors);
  void SetItems(std::vector<ReadoutItem> items);
  // Forgets the kept widths, for another series.
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
  // The left upper corner of each item in a bar of that width.
  std::vector<QPoint> Places(int width) const;
  int RowHeight() const;
  void FitHeight();

  const ChartColors* colors_;
  std::vector<ReadoutItem> items_;
  std::vector<int> widths_;
};

}  // namespace velumar
