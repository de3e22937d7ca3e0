#pragma once

#include <filesystem>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace velumar {

// The first stages of an import: the bytes of a file, its lines, and the fields of a line.

// A CSV file that cannot be imported. The message names the line and the value where there is one,
// but not the file.
class CsvError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// The bytes of a regular file of at most 64 MiB. Throws CsvError, also for a pipe: symbol and
// interval are taken from the name of a file.
std::string ReadCsvBytes(const std::filesystem::path& file);

// The lines of a CSV text. They end with LF, CRLF or CR; blank lines are skipped but counted.
// Fields may be quoted, with a quote doubled inside; a quoted field ends on its own line. Blanks
// around a field are dropped.
class CsvLines {
 public:
  // `text` must outlive the object. Skips a byte order mark. Throws CsvError for UTF-16.
  explicit CsvLines(std::string_view text);

  // Moves to the next line that is not blank; false at the end of the text.
  bool Next();
  // Of the current line; the first is 1.
  int Number() const { return number_; }
  // Splits the current line at the separator: the comma, semicolon or tab that occurs most often in
  // the first line. Valid until the next call. Throws CsvError for a quote that is not closed and
  // for more than a thousand fields.
  const std::vector<std::string>& Fields();

 private:
  std::string_view TakeLine();
  std::string TakeQuoted();
  std::string TakePlain();

  std::string_view rest_;
  std::string_view line_;
  int number_ = 0;
  char separator_ = ',';
  std::vector<std::string> fields_;
};

}  // namespace velumar
