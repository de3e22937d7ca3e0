#include "marketdata/csv_lines.h"

#include <algorithm>

#include "base/text.h"
#include "marketdata/csv_error.h"

namespace velumar {

namespace {

constexpr std::size_t kMostCells = 1000;
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

bool IsEmpty(std::string_view line) {
  return line.find_first_not_of(" \t") == std::string_view::npos;
}

char SeparatorOf(std::string_view header) {
  char best = ',';
  for (const char separator : {';', '\t'}) {
    if (std::ranges::count(header, separator) > std::ranges::count(header, best)) best = separator;
  }
  return best;
}

}  // namespace

CsvLines::CsvLines(std::string_view text) : rest_(text) {
  if (text.find('\0') != std::string_view::npos) {
    throw CsvError("this is no plain text; save it as CSV in UTF-8");
  }
  if (rest_.starts_with(kByteOrderMark)) rest_.remove_prefix(kByteOrderMark.size());
  const auto start = rest_.find_first_not_of(" \r\n");
  if (start == std::string_view::npos) return;
  separator_ = SeparatorOf(rest_.substr(start, rest_.find_first_of("\r\n", start) - start));
}

bool CsvLines::Next() {
  do {
    if (rest_.empty()) return false;
    line_ = TakeLine();
    ++number_;
  } while (IsEmpty(line_));
  return true;
}

std::string_view CsvLines::TakeLine() {
  const auto end = std::min(rest_.find_first_of("\r\n"), rest_.size());
  const std::string_view line = rest_.substr(0, end);
  const std::size_t mark = rest_.substr(end).starts_with("\r\n") ? 2 : 1;
  rest_.remove_prefix(std::min(end + mark, rest_.size()));
  return line;
}

const std::vector<std::string>& CsvLines::Cells() {
  cells_.clear();
  for (;;) {
    line_.remove_prefix(std::min(line_.find_first_not_of(' '), line_.size()));
    cells_.push_back(line_.starts_with('"') ? TakeQuoted() : TakePlain());
    if (line_.empty()) return cells_;
    if (cells_.size() == kMostCells) {
      throw CsvError("has more than " + std::to_string(kMostCells) + " cells");
    }
    line_.remove_prefix(1);
  }
}

// Both leave `line_` empty or at a separator.

std::string CsvLines::TakeQuoted() {
  std::string cell;
  for (std::size_t i = 1; i < line_.size(); ++i) {
    if (line_[i] != '"') {
      cell += line_[i];
    } else if (line_.substr(i + 1).starts_with('"')) {
      cell += line_[i++];
    } else {
      line_.remove_prefix(i + 1);
      return Trimmed(cell + TakePlain());
    }
  }
  throw CsvError("a quote is opened but not closed");
}

std::string CsvLines::TakePlain() {
  const auto end = std::min(line_.find(separator_), line_.size());
  std::string cell = Trimmed(line_.substr(0, end));
  line_.remove_prefix(end);
  return cell;
}

}  // namespace velumar
