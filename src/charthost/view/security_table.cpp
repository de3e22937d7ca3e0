#include "charthost/view/security_table.h"

#include "charthost/bar_text.h"
#include "charts/qt_text.h"

namespace velumar {
namespace {

QString DayOf(std::int32_t date) { return date == 0 ? QString() : ToQt(DayText(date)); }

struct ColumnText {
  const char* title;
  QString (*text)(const SecurityInfo& security);
  QVariant (*sort_key)(const SecurityInfo& security);
};

const std::array<ColumnText, SecurityTable::kColumns> kColumnTable = {
    {{"Symbol", [](const SecurityInfo& s) { return ToQt(s.symbol); },
      [](const SecurityInfo& s) { return QVariant(ToQt(s.symbol)); }},
     {"Name", [](const SecurityInfo& s) { return ToQt(s.name); },
      [](const SecurityInfo& s) { return QVariant(ToQt(s.name)); }},
     {"Interval", [](const SecurityInfo& s) { return ToQt(IntervalTitle(s.interval)); },
      [](const SecurityInfo& s) { return QVariant(s.interval < 0 ? 1440 : s.interval); }},
     {"Bars",
      [](const SecurityInfo& s) {
        return s.bars == 0 ? QStringLiteral("none") : QString::number(s.bars);
      },
      [](const SecurityInfo& s) { return QVariant(s.bars); }},
     {"First", [](const SecurityInfo& s) { return DayOf(s.first_date); },
      [](const SecurityInfo& s) { return QVariant(s.first_date); }},
     {"Last", [](const SecurityInfo& s) { return DayOf(s.last_date); },
      [](const SecurityInfo& s) { return QVariant(s.last_date); }}}};

}  // namespace

void SecurityTable::Show(std::vector<SecurityInfo> securities) {
  beginResetModel();
  securities_ = std::move(securities);
  endResetModel();
}

int SecurityTable::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(securities_.size());
}

int SecurityTable::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : kColumns;
}

QVariant SecurityTable::data(const QModelIndex& index, int role) const {
  const SecurityInfo& security = securities_[index.row()];
  const ColumnText& column = kColumnTable.at(static_cast<std::size_t>(index.column()));
  if (role == Qt::DisplayRole) return column.text(security);
  if (role == kSortRole) return column.sort_key(security);
  if (role == Qt::TextAlignmentRole && index.column() >= kBars) {
    return QVariant(Qt::AlignRight | Qt::AlignVCenter);
  }
  return {};
}

QVariant SecurityTable::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal) return {};
  if (role == Qt::TextAlignmentRole) {
    return QVariant((section >= kBars ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter);
  }
  if (role != Qt::DisplayRole) return {};
  return tr(kColumnTable.at(static_cast<std::size_t>(section)).title);
}

SecurityFilter::SecurityFilter(SecurityTable& table, QObject* parent)
    : QSortFilterProxyModel(parent), table_(table) {
  setSourceModel(&table);
  setSortRole(SecurityTable::kSortRole);
  setSortCaseSensitivity(Qt::CaseInsensitive);
}

void SecurityFilter::SetText(const QString& text) {
  text_ = text.trimmed();
  invalidateFilter();
}

void SecurityFilter::SetInterval(std::optional<int> interval) {
  interval_ = interval;
  invalidateFilter();
}

bool SecurityFilter::filterAcceptsRow(int row, const QModelIndex&) const {
  const SecurityInfo& security = table_.Securities()[row];
  if (interval_ && security.interval != *interval_) return false;
  return ToQt(security.symbol).contains(text_, Qt::CaseInsensitive) ||
         ToQt(security.name).contains(text_, Qt::CaseInsensitive);
}

}  // namespace velumar
