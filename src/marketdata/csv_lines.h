#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace velumar {

// Takes the text of a CSV file apart, line by line. Lines end with LF, CRLF or CR; empty ones are
// passed over but counted. Cells may be quoted, a doubled quote inside standing for one; a quoted
// cell ends on its own line. Blanks around a cell don't belong to it.
class CsvLines {
 public:
  // `text` outlives the object. A byte order mark is skipped. Throws CsvError for a text of
  // sixteen-bit characters.
  explicit CsvLines(std::string_view text);

  // Moves to the next line that isn't empty; false at the end of the text.
  bool Next();
  // Of the current line; the first is 1.
  int Number() const { return number_; }
  // Cuts the current line at the separator, which is the tab, semicolon or comma that the first
  // line of the file holds most of. Throws CsvError for a quote that isn't closed and for a line of
  // more than a thousand cells.
  const std::vector<std::string>& Cells();

 private:
  std::string_view TakeLine();
  std::string TakeQuoted();
  std::string TakePlain();

  std::string_view rest_;
  std::string_view line_;
  int number_ = 0;
  char separator_ = ',';
  std::vector<std::string> cells_;
};

}  // namespace velumar
