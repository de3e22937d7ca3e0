#include "import/sample_table.h"

#include <algorithm>
#include <array>
#include <map>

#include "base/dates.h"
#include "import/field_text.h"
#include "import/line_fields.h"

namespace velumar {

namespace {

constexpr std::size_t kEnoughLines = 300;
constexpr std::array kSeparators = {',', ';', '\t', '|', ' '};

struct RowScore {
  bool is_row = false;
  int values = 0;  // fields that hold values, less those that don't
};

RowScore ScoreOf(const std::vector<std::string>& fields, const DateStyle& style) {
  int dates = 0;
  int numbers = 0;
  int others = 0;
  for (const std::string& field : fields) {
    if (LooksLikeDate(field, style)) {
      ++dates;
    } else if (LooksLikeNumber(field)) {
      ++numbers;
    } else if (ReadTimeText(field, TimeDigits::kHoursAndMinutes)) {
      ++numbers;
    } else if (!IsMissing(field)) {
      ++others;
    }
  }
  const bool is_row = dates > 0 && numbers > 0;
  return {is_row, is_row ? dates + numbers - others : 0};
}

SampleTable SplitWith(char separator, std::span<const TextLine> lines, const DateStyle& style,
                      int& score) {
  SampleTable table{.separator = separator};
  LineFields splitter(separator);
  std::map<std::size_t, int> widths;
  score = 0;
  for (const TextLine& line : lines.first(std::min(lines.size(), kEnoughLines))) {
    table.lines.push_back(FieldsOf(splitter, line.text));
    const RowScore row = ScoreOf(table.lines.back(), style);
    table.is_row.push_back(row.is_row);
    if (!row.is_row) continue;
    score += row.values;
    table.has_quotes |= line.text.find('"') != std::string_view::npos;
    ++widths[table.lines.back().size()];
  }
  const auto most =
      std::ranges::max_element(widths, {}, [](const auto& width) { return width.second; });
  if (most == widths.end()) return table;
  table.width = most->first;
  while (!table.is_row[table.first_row] || table.lines[table.first_row].size() != table.width) {
    ++table.first_row;
  }
  return table;
}

[[noreturn]] void RefuseSample(std::span<const TextLine> lines, const DateStyle& style) {
  for (const TextLine& line : lines) {
    for (const char separator : kSeparators) {
      LineFields splitter(separator);
      const std::vector<std::string> fields = FieldsOf(splitter, line.text);
      if (fields.size() < 3 || !LooksLikeDate(fields.front(), style)) continue;
      throw ImportError("line " + std::to_string(line.number) + ": \"" + fields[1] +
                        "\" is not a number");
    }
  }
  if (style.pattern) {
    throw ImportError("no line has a date in the format \"" + style.pattern->Text() +
                      "\" and a price");
  }
  throw ImportError("no line has a date and a price");
}

}  // namespace

std::vector<std::string> FieldsOf(LineFields& splitter, std::string_view line) {
  try {
    const std::vector<std::string_view>& fields = splitter.Split(line);
    return {fields.begin(), fields.end()};
  } catch (const ImportError&) {
    return {std::string(line)};  // no row
  }
}

std::vector<std::string_view> SampleTable::Column(std::size_t column) const {
  std::vector<std::string_view> fields;
  for (std::size_t i = 0; i < lines.size(); ++i) {
    if (!is_row[i] || column >= lines[i].size() || IsMissing(lines[i][column])) continue;
    fields.push_back(lines[i][column]);
  }
  return fields;
}

SampleTable SplitSample(std::span<const TextLine> lines, const DateStyle& dates) {
  SampleTable best;
  int best_score = 0;
  for (const char separator : kSeparators) {
    const bool occurs = std::ranges::any_of(lines, [&](const TextLine& line) {
      return line.text.find(separator) != std::string_view::npos;
    });
    if (!occurs) continue;
    int score = 0;
    SampleTable table = SplitWith(separator, lines, dates, score);
    if (score <= best_score) continue;
    best_score = score;
    best = std::move(table);
  }
  if (best_score > 0) return best;
  RefuseSample(lines, dates);
}

bool LooksLikeNumber(std::string_view field) {
  if (std::ranges::none_of(field, IsDigit)) return false;
  return NumberIn(field, {false}) || NumberIn(field, {true});
}

bool LooksLikeUnixTime(std::string_view field) {
  const auto number = ReadUnixNumber(field);
  if (!number) return false;
  for (std::int64_t per_second = 1; per_second <= 1'000'000'000; per_second *= 1000) {
    constexpr std::int64_t kFirst = 100'000'000;
    constexpr std::int64_t kLast = 10'000'000'000;
    const std::int64_t seconds = *number / per_second;
    if (seconds >= kFirst && seconds < kLast) return true;
  }
  return false;
}

bool LooksLikeDate(std::string_view field, const DateStyle& style) {
  if (style.kind == DateStyle::Kind::kPattern) return style.pattern->Read(field).has_value();
  if (style.kind == DateStyle::Kind::kSixDigits) {
    const auto date = ReadSixDigits(field);
    return date && IsRealDate(*date);
  }
  return LooksLikeDateText(field) || LooksLikeUnixTime(field);
}

bool LooksLikeDateText(std::string_view field) {
  if (std::ranges::none_of(field, IsDigit)) return false;
  for (const DateOrder order :
       {DateOrder::kDayMonthYear, DateOrder::kMonthDayYear, DateOrder::kYearMonthDay}) {
    const auto moment = ReadDateText(field, order);
    if (moment && IsRealDate(moment->date) && moment->date > 19000000 && moment->date < 21000000) {
      return true;
    }
  }
  return false;
}

}  // namespace velumar
