#pragma once

#include <QAbstractTableModel>
#include <QStringList>
#include <QTableView>
#include <vector>

#include "app/controls/control_view.h"
#include "forms/table.h"

namespace velumar {

// Hands the rows of a table to the toolkit as they come into sight.
class TableRows : public QAbstractTableModel {
 public:
  explicit TableRows(const Table& table) : table_(table) {}
  // The table holds other rows now.
  void Renew();

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  const Table& table_;
};

class TableView : public QTableView, public ControlView {
 public:
  TableView(FormCanvas& canvas, QWidget& window, Table& table);
  QWidget& Widget() override { return *this; }
  void Update() override;

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) override;

 private:
  void MarkSorting();
  void FitColumns();
  QStringList LongestTexts() const;
  std::vector<int> ColumnWidths(const QFont& font, const QStringList& texts) const;

  FormCanvas& canvas_;
  Table& table_;
  TableRows rows_;
  unsigned shown_ = 0;  // the table's version
};

}  // namespace velumar
