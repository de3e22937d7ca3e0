#include "app/controls/list_box_view.h"

namespace velumar {

namespace {

constexpr std::size_t kLongestLine = 1000;  // bytes: what comes from outside may have no end
constexpr std::size_t kMeasuredLines = 500;

QString ShownLine(const std::string& line) {
  QString shown = ToQString(line.substr(0, kLongestLine));
  for (QChar& character : shown) {
    if (!character.isPrint() && !character.isSurrogate()) character = QLatin1Char(' ');
  }
  return line.size() > kLongestLine ? shown + QChar(0x2026) : shown;
}

}  // namespace

ListBoxView::ListBoxView(FormCanvas& canvas, QWidget& window, ListBox& box)
    : QListView(&window), canvas_(canvas), box_(box) {
  setModel(&lines_);
  setEditTriggers(QAbstractItemView::NoEditTriggers);
  setTextElideMode(Qt::ElideNone);
  setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
  setTabKeyNavigation(false);
}

void ListBoxView::Update() {
  ApplyCommon(*this, box_);
  ApplyFieldColours(*this, box_, canvas_.Look().theme);
  setFont(canvas_.Look().faces.For(box_.DesignLook()));
  if (box_.Lines() == shown_) return;
  shown_ = box_.Lines();
  QStringList lines;
  for (const std::string& line : shown_) lines.append(ShownLine(line));
  setUniformItemSizes(shown_.size() > kMeasuredLines);
  lines_.setStringList(lines);
}

}  // namespace velumar
