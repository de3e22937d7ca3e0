#include "charthost/view/security_table.h"

#include "charthost/bar_text.h"
#include "charts/qt_text.h"

namespace velumar {
namespace {

QString DayOf(std::int32_t date) { return date == 0 ? QString() : ToQt(DayText(date)); }

QString CellText(const SecurityInfo& security, int column) {
  switch (column) {
    case SecurityTable::kSymbol:
      return ToQt(security.symbol);
    case SecurityTable::kName:
      return ToQt(security.name);
    case SecurityTable::kInterval:
      return ToQt(IntervalTitle(security.interval));
    case SecurityTable::kBars:
      return security.bars == 0 ? QObject::tr("none") : QString::number(security.bars);
    case SecurityTable::kFirst:
      return DayOf(security.first_date);
    case SecurityTable::kLast:
      return DayOf(security.last_date);
    default:
      return {};
  }
}

QVariant SortValue(const SecurityInfo& security, int column) {
  switch (column) {
    case SecurityTable::kInterval:
      return security.interval < 0 ? 1440 : security.interval;
    case SecurityTable::kBars:
      return security.bars;
    case SecurityTable::kFirst:
      return security.first_date;
    case SecurityTable::kLast:
      return security.last_date;
    default:
      return CellText(security, column);
  }
}

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
  if (role == Qt::DisplayRole) return CellText(security, index.column());
  if (role == kSortRole) return SortValue(security, index.column());
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
  switch (section) {
    case kSymbol:
      return tr("Symbol");
    case kName:
      return tr("Name");
    case kInterval:
      return tr("Interval");
    case kBars:
      return tr("Bars");
    case kFirst:
      return tr("First");
    default:
      return tr("Last");
  }
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
