#pragma once

#include <QAbstractTableModel>
#include <QSortFilterProxyModel>
#include <optional>
#include <vector>

#include "marketdata/metalib_reader.h"

namespace velumar {

// The securities of a folder as rows.
class SecurityTable : public QAbstractTableModel {
  Q_OBJECT

 public:
  enum Column { kSymbol, kName, kInterval, kBars, kFirst, kLast, kColumns };
  static constexpr int kSortRole = Qt::UserRole;

  using QAbstractTableModel::QAbstractTableModel;

  void Show(std::vector<SecurityInfo> securities);
  const std::vector<SecurityInfo>& Securities() const { return securities_; }

  int rowCount(const QModelIndex& parent) const override;
  int columnCount(const QModelIndex& parent) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  std::vector<SecurityInfo> securities_;
};

// The rows whose symbol or name contains the text, of one interval or of all.
class SecurityFilter : public QSortFilterProxyModel {
  Q_OBJECT

 public:
  explicit SecurityFilter(SecurityTable& table, QObject* parent);

  void SetText(const QString& text);
  void SetInterval(std::optional<int> interval);

 protected:
  bool filterAcceptsRow(int row, const QModelIndex& parent) const override;

 private:
  const SecurityTable& table_;
  QString text_;
  std::optional<int> interval_;
};

}  // namespace velumar
