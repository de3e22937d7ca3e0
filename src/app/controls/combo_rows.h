#pragma once

#include <QAbstractListModel>
#include <QStyledItemDelegate>
#include <vector>

#include "forms/control.h"

class QFontMetrics;

namespace velumar {

// Lines of a box as a list shows them: all, or those that somebody looks for.
class ComboRows : public QAbstractListModel {
 public:
  static constexpr int kNoteRole = Qt::UserRole;
  static constexpr int kRowRole = Qt::UserRole + 1;  // the index among all lines of the box
  static constexpr int kNoRole = Qt::UserRole + 2;   // never has a text

  void Show(const std::vector<ComboBox::Row>& rows);
  void Show(const std::vector<ComboBox::Row>& rows, const std::vector<int>& which);
  // True when exactly these lines are shown.
  bool Shows(const std::vector<ComboBox::Row>& rows) const;
  // Logical pixels that a list of these lines wants, within limits.
  int ListWidth(const QFontMetrics& metrics, int least, int most) const;

  int rowCount(const QModelIndex& parent) const override;
  QVariant data(const QModelIndex& index, int role) const override;

 private:
  struct Line {
    ComboBox::Row row;
    int index = 0;
  };
  std::vector<Line> lines_;
  std::string longest_text_;
  std::string longest_note_;
};

// Draws a line with its note beside it, in a column of its own.
class ComboRowPainter : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;
  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override;

  // Where notes begin: behind the longest symbol that index files hold.
  static int NoteColumn(const QFontMetrics& metrics);
};

}  // namespace velumar
