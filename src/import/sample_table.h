#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "import/line_fields.h"
#include "import/moment_reader.h"
#include "import/table_format.h"

namespace velumar {

// The first lines of a file, split into fields by the separator that makes the most of them rows of
// values.
struct SampleTable {
  char separator = ',';
  std::vector<std::vector<std::string>> lines = {};  // the fields of each line
  std::vector<bool> is_row = {};                     // has a date and a number
  std::size_t first_row = 0;
  std::size_t width = 0;    // of most rows
  bool has_quotes = false;  // in a row

  // The filled fields of a column in all rows.
  std::vector<std::string_view> Column(std::size_t column) const;
};

// Throws ImportError, naming the first line that begins like a row, if none is.
SampleTable SplitSample(std::span<const TextLine> lines, const DateStyle& dates);

// The fields of a line, or the line itself if it can't be split.
std::vector<std::string> FieldsOf(LineFields& splitter, std::string_view line);

// A number in some style.
bool LooksLikeNumber(std::string_view field);
// A Unix time of the years 1973 to 2286, in any unit.
bool LooksLikeUnixTime(std::string_view field);
// A date of this and the last century, as a text.
bool LooksLikeDateText(std::string_view field);
bool LooksLikeDate(std::string_view field, const DateStyle& style);

}  // namespace velumar
