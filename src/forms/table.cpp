#include "forms/table.h"

namespace velumar {

void Table::Reset() {
  Control::Reset();
  columns_.clear();
  rows_ = {};
  sorting_ = {};
  selected_.clear();
  ++version_;
}

void Table::SetColumns(std::vector<Column> columns) {
  columns_ = std::move(columns);
  ContentChanged();
}

void Table::SetContent(Rows rows) {
  rows_ = std::move(rows);
  selected_.clear();
  ContentChanged();
}

void Table::MarkSorting(Sorting sorting) {
  sorting_ = sorting;
  ContentChanged();
}

void Table::ContentChanged() {
  ++version_;
  Changed();
}

void Table::AppendLine(std::string& text, std::size_t row) const {
  for (std::size_t i = 0; i < columns_.size(); ++i) {
    text += (i == 0 ? "" : "\t") + rows_.text(row, i);
  }
  text += '\n';
}

std::string Table::CopyText() const {
  std::string text;
  for (const Column& column : columns_) text += (text.empty() ? "" : "\t") + column.title;
  text += '\n';
  for (const std::size_t row : selected_) AppendLine(text, row);
  for (std::size_t row = 0; selected_.empty() && row < rows_.count; ++row) AppendLine(text, row);
  return text;
}

void Table::Select(const std::vector<std::size_t>& rows) {
  if (Assign(selected_, rows)) Fire(on_select);
}

void Table::UserSelect(const std::vector<std::size_t>& rows) {
  if (Reachable()) Select(rows);
}

}  // namespace velumar
