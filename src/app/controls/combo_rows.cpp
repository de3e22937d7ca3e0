#include "app/controls/combo_rows.h"

#include <QApplication>
#include <QFontMetrics>
#include <QPainter>
#include <algorithm>
#include <numeric>

#include "app/controls/control_view.h"

namespace velumar {

namespace {

constexpr int kListMargin = 4;
constexpr int kScrollBarRoom = 24;

QString NoteOf(const ComboBox::Row& row) {
  return row.note == row.text ? QString() : ToQString(row.note);
}

void KeepLonger(std::string& longest, const std::string& text) {
  if (text.size() > longest.size()) longest = text;
}

}  // namespace

void ComboRows::Show(const std::vector<ComboBox::Row>& rows) {
  std::vector<int> all(rows.size());
  std::iota(all.begin(), all.end(), 0);
  Show(rows, all);
}

void ComboRows::Show(const std::vector<ComboBox::Row>& rows, const std::vector<int>& which) {
  beginResetModel();
  lines_.clear();
  lines_.reserve(which.size());
  longest_text_.clear();
  longest_note_.clear();
  for (const int index : which) {
    const ComboBox::Row& row = rows.at(static_cast<std::size_t>(index));
    lines_.push_back({row, index});
    KeepLonger(longest_text_, row.text);
    if (row.note != row.text) KeepLonger(longest_note_, row.note);
  }
  endResetModel();
}

bool ComboRows::Shows(const std::vector<ComboBox::Row>& rows) const {
  return std::equal(rows.begin(), rows.end(), lines_.begin(), lines_.end(),
                    [](const ComboBox::Row& row, const Line& line) {
                      return row.text == line.row.text && row.note == line.row.note;
                    });
}

int ComboRows::ListWidth(const QFontMetrics& metrics, int least, int most) const {
  const int text = metrics.horizontalAdvance(ToQString(longest_text_));
  const int note = metrics.horizontalAdvance(ToQString(longest_note_));
  const int wanted = note == 0 ? text : ComboRowPainter::NoteColumn(metrics) + note;
  return std::clamp(wanted + 2 * kListMargin + kScrollBarRoom, least, std::max(least, most));
}

int ComboRows::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(lines_.size());
}

QVariant ComboRows::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return {};
  const Line& line = lines_.at(static_cast<std::size_t>(index.row()));
  const QString text = ToQString(line.row.text);
  const QString note = NoteOf(line.row);
  switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
      return text;
    case Qt::AccessibleTextRole:
      return note.isEmpty() ? text : text + QStringLiteral(", ") + note;
    case kNoteRole:
      return note;
    case kRowRole:
      return line.index;
    default:
      return {};
  }
}

int ComboRowPainter::NoteColumn(const QFontMetrics& metrics) {
  return metrics.horizontalAdvance(QStringLiteral("MMMMMMMM"));
}

void ComboRowPainter::paint(QPainter* painter, const QStyleOptionViewItem& option,
                            const QModelIndex& index) const {
  QStyledItemDelegate::paint(painter, option, index);
  const QString note = index.data(ComboRows::kNoteRole).toString();
  if (note.isEmpty()) return;
  const int text = option.fontMetrics.horizontalAdvance(index.data().toString());
  const int start = std::max(NoteColumn(option.fontMetrics), text + 3 * kListMargin);
  const QRect room = option.rect.adjusted(start, 0, -kListMargin, 0);
  const bool chosen = option.state.testFlag(QStyle::State_Selected);
  painter->save();
  painter->setFont(option.font);
  painter->setPen(
      option.palette.color(chosen ? QPalette::HighlightedText : QPalette::PlaceholderText));
  painter->drawText(room, Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine,
                    option.fontMetrics.elidedText(note, Qt::ElideRight, room.width()));
  painter->restore();
}

}  // namespace velumar
