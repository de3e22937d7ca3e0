#pragma once

#include <string>
#include <vector>

namespace velumar {

// A title line and rows of aligned columns, separated by two spaces. Texts are UTF-8, one column
// per character. Control characters are shown as "?", so that a damaged text can't garble the
// terminal.
class TextTable {
 public:
  enum Side { kLeft, kRight };
  struct Column {
    std::string title;
    Side side = kLeft;
  };

  explicit TextTable(std::vector<Column> columns);
  // One cell per column.
  void AddRow(std::vector<std::string> cells);
  std::string Text() const;

 private:
  std::string Line(const std::vector<std::string>& cells) const;

  std::vector<Column> columns_;
  std::vector<std::size_t> widths_;
  std::vector<std::vector<std::string>> rows_;
};

}  // namespace velumar
