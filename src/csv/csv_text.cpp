#include "csv/csv_text.h"

#include <algorithm>
#include <system_error>

#include "base/text.h"
#include "base/whole_file.h"
#include "marketdata/data_file.h"

namespace velumar {

namespace {

constexpr std::size_t kLargestFile = 64 << 20;  // bytes: a thousand per bar of the longest series
constexpr std::size_t kMostFields = 1000;
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

char SeparatorOf(std::string_view header) {
  char best = ',';
  for (const char separator : {';', '\t'}) {
    if (std::ranges::count(header, separator) > std::ranges::count(header, best)) best = separator;
  }
  return best;
}

}  // namespace

std::string ReadCsvBytes(const std::filesystem::path& file) {
  try {
    return ReadWholeFile(file, kLargestFile);
  } catch (const FileError& error) {
    std::string why = std::string(kCantRead) + ": " + error.Reason();
    const bool too_large = error.code() == std::errc::file_too_large;
    if (too_large) why += "; a series holds at most " + std::to_string(kMostBars) + " bars";
    throw CsvError(why);
  }
}

CsvLines::CsvLines(std::string_view text) : rest_(text) {
  if (text.find('\0') != std::string_view::npos) {
    throw CsvError("this is not plain text; save it as CSV in UTF-8");
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
  } while (line_.find_first_not_of(" \t") == std::string_view::npos);
  return true;
}

std::string_view CsvLines::TakeLine() {
  const auto end = std::min(rest_.find_first_of("\r\n"), rest_.size());
  const std::string_view line = rest_.substr(0, end);
  const std::size_t line_end = rest_.substr(end).starts_with("\r\n") ? 2 : 1;
  rest_.remove_prefix(std::min(end + line_end, rest_.size()));
  return line;
}

const std::vector<std::string>& CsvLines::Fields() {
  fields_.clear();
  for (;;) {
    line_.remove_prefix(std::min(line_.find_first_not_of(' '), line_.size()));
    fields_.push_back(line_.starts_with('"') ? TakeQuoted() : TakePlain());
    if (line_.empty()) return fields_;
    if (fields_.size() == kMostFields) {
      throw CsvError("has more than " + std::to_string(kMostFields) + " fields");
    }
    line_.remove_prefix(1);
  }
}

// Both leave `line_` empty or at a separator.

std::string CsvLines::TakeQuoted() {
  std::string field;
  for (std::size_t i = 1; i < line_.size(); ++i) {
    if (line_[i] != '"') {
      field += line_[i];
    } else if (line_.substr(i + 1).starts_with('"')) {
      field += line_[i++];
    } else {
      line_.remove_prefix(i + 1);
      return Trimmed(field + TakePlain());
    }
  }
  throw CsvError("has a quote that is not closed");
}

std::string CsvLines::TakePlain() {
  const auto end = std::min(line_.find(separator_), line_.size());
  std::string field = Trimmed(line_.substr(0, end));
  line_.remove_prefix(end);
  return field;
}

}  // namespace velumar
