#pragma once

#include "forms/control.h"

namespace velumar {

// A table with titled columns. Rows are requested when they become visible, so a hundred thousand
// cost nothing until then.
class Table : public Control {
 public:
  struct Column {
    std::string title;
    bool numeric = false;
    float width = 0;  // twips; 0: as its texts need
  };
  struct Rows {
    std::size_t count = 0;
    std::function<std::string(std::size_t row, std::size_t column)> text;
    std::function<std::string(std::size_t row)> tip;     // empty: none
    std::function<Colour(std::size_t row)> colour = {};  // 0 or empty: that of the theme
  };

  Table(Form& form, const ControlSpec& spec) : Control(form, ControlKind::kTable, spec) {}
  void Reset() override;

  const std::vector<Column>& Columns() const { return columns_; }
  void SetColumns(std::vector<Column> columns);
  const Rows& Content() const { return rows_; }
  // Clears the selection.
  void SetContent(Rows rows);
  // Shows the rows again: their texts have changed, but not their number.
  void Refresh() { Changed(); }

  struct Sorting {
    std::size_t column = 0;
    bool descending = false;
    bool operator==(const Sorting&) const = default;
  };
  const Sorting& SortedBy() const { return sorting_; }
  // Increases with each change of columns, rows or order.
  unsigned Version() const { return version_; }
  void MarkSorting(Sorting sorting);

  // The selected rows, or all if none is, after a line of titles; fields are separated by tabs.
  std::string CopyText() const;

  void UserHeader(std::size_t column) { UserFire(on_header, column); }
  // The numbers of the selected rows, rising.
  const std::vector<std::size_t>& Selected() const { return selected_; }
  // Fires on_select if the selection changes.
  void Select(const std::vector<std::size_t>& rows);
  void UserSelect(const std::vector<std::size_t>& rows);
  void UserCopy() { UserFire(on_copy); }

  std::function<void(std::size_t column)> on_header;
  std::function<void()> on_select;
  std::function<void()> on_copy;

 private:
  void AppendLine(std::string& text, std::size_t row) const;
  void ContentChanged();

  std::vector<Column> columns_;
  Rows rows_;
  Sorting sorting_;
  unsigned version_ = 1;
  std::vector<std::size_t> selected_;
};

}  // namespace velumar
