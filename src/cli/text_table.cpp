#include "cli/text_table.h"

#include <algorithm>
#include <utility>

namespace velumar {

namespace {

bool IsContinuation(char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; }

std::size_t Width(const std::string& text) {
  return text.size() - static_cast<std::size_t>(std::ranges::count_if(text, IsContinuation));
}

// Control characters are those below the space, DEL, and U+0080 to U+009F (C2 80 to C2 9F in
// UTF-8).
std::string Printable(const std::string& text) {
  std::string printable;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto byte = static_cast<unsigned char>(text[i]);
    const bool high =
        byte == 0xC2 && i + 1 < text.size() && static_cast<unsigned char>(text[i + 1]) < 0xA0;
    const bool control = byte < 0x20 || byte == 0x7F || high;
    printable += control ? '?' : text[i];
    if (high) ++i;
  }
  return printable;
}

}  // namespace

TextTable::TextTable(std::vector<Column> columns) : columns_(std::move(columns)) {
  std::vector<std::string> titles;
  for (const Column& column : columns_) titles.push_back(column.title);
  widths_.resize(columns_.size());
  AddRow(std::move(titles));
}

void TextTable::AddRow(std::vector<std::string> cells) {
  for (std::size_t i = 0; i < cells.size(); ++i) {
    cells[i] = Printable(cells[i]);
    widths_[i] = std::max(widths_[i], Width(cells[i]));
  }
  rows_.push_back(std::move(cells));
}

std::string TextTable::Text() const {
  std::string text;
  for (const auto& row : rows_) text += Line(row) + "\n";
  return text;
}

std::string TextTable::Line(const std::vector<std::string>& cells) const {
  std::string line;
  for (std::size_t i = 0; i < cells.size(); ++i) {
    const std::string fill(widths_[i] - Width(cells[i]), ' ');
    if (i > 0) line += "  ";
    line += columns_[i].side == kRight ? fill + cells[i] : cells[i] + fill;
  }
  line.erase(line.find_last_not_of(' ') + 1);
  return line;
}

}  // namespace velumar
