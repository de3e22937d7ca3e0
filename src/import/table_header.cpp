#include "import/table_header.h"

#include <algorithm>
#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

#include "base/text.h"
#include "import/column_names.h"
#include "import/field_text.h"

namespace velumar {

namespace {

class HeaderSearch {
 public:
  HeaderSearch(const SampleTable& sample, std::span<const TextLine> lines,
               const ColumnValues& values, TableFormat& format)
      : sample_(sample), lines_(lines), values_(values), format_(format) {}

  void Run() {
    std::size_t most = 1;
    for (std::size_t i = 0; i < sample_.first_row; ++i) {
      const std::vector<std::string> titles = TitlesOf(i);
      const std::size_t named = NamedColumns(titles).size();
      if (named <= most) continue;
      most = named;
      SetHeader(i, titles);
    }
    if (format_.header_line > 0 || sample_.first_row == 0) return;
    const std::vector<std::string> last = TitlesOf(sample_.first_row - 1);
    const bool is_text = std::ranges::none_of(
        last, [](const std::string& title) { return !title.empty() && IsDigit(title.front()); });
    if (is_text && last.size() == sample_.width) SetHeader(sample_.first_row - 1, last);
  }

 private:
  std::vector<std::string> TitlesOf(std::size_t line) const {
    std::vector<std::string> titles = sample_.lines[line];
    if (!titles.front().starts_with('#')) return titles;
    titles.front() = std::string(Stripped(std::string_view(titles.front()).substr(1)));
    if (titles.front().empty() && format_.separator == ' ') titles.erase(titles.begin());
    return titles;
  }

  void SetHeader(std::size_t line, std::vector<std::string> titles) {
    format_.header_line = lines_[line].number;
    format_.header = std::string(lines_[line].text);
    while (titles.size() > sample_.width && titles.back().empty()) titles.pop_back();
    if (format_.separator == ' ') JoinNames(titles);
    if (titles.size() + 1 == sample_.width) InsertMissing(titles);
    format_.width = titles.size();
    titles.resize(std::max(titles.size(), sample_.width));
    format_.columns.assign(titles.size(), {});
    for (std::size_t i = 0; i < titles.size(); ++i) format_.columns[i].title = titles[i];
  }

  // Blanks between columns have cut names in two: "Open Interest", "Date & Time".
  void JoinNames(std::vector<std::string>& titles) const {
    const auto join = [&](std::size_t first, std::size_t words) {
      for (std::size_t i = 1; i < words; ++i) titles[first] += " " + titles[first + i];
      const auto rest = titles.begin() + static_cast<std::ptrdiff_t>(first) + 1;
      titles.erase(rest, rest + static_cast<std::ptrdiff_t>(words) - 1);
    };
    const auto is = [&](std::size_t place, std::initializer_list<const char*> words) {
      const std::string title = place < titles.size() ? UpperCased(titles[place]) : "";
      return std::ranges::any_of(words, [&](const char* word) { return title == word; });
    };
    const auto is_name = [](const std::string& title) {
      return !NamedColumns(std::span(&title, 1)).empty();
    };
    for (std::size_t i = 0; i + 1 < titles.size(); ++i) {
      if (is(i, {"DATE"}) && is(i + 1, {"&", "AND", "/"}) && is(i + 2, {"TIME"})) join(i, 3);
      if (is(i, {"OPEN"}) && is(i + 1, {"INTEREST", "INT", "INT."})) join(i, 2);
      if (is(i, {"ADJ", "ADJ.", "ADJUSTED"}) && is(i + 1, {"CLOSE", "CLOSE*", "CLOSE**"}))
        join(i, 2);
    }
    for (std::size_t i = 0; i + 1 < titles.size() && titles.size() > sample_.width; ++i) {
      const bool both = is_name(titles[i]) && is_name(titles[i + 1]);
      if (!both && is_name(titles[i] + titles[i + 1])) join(i, 2);
    }
  }

  // Some programs number the rows without a title, or have one title for date and time.
  void InsertMissing(std::vector<std::string>& titles) const {
    if (values_.CountRows(0)) {
      titles.insert(titles.begin(), "");
    } else if (sample_.width > 1 && values_.AreDates(0) && values_.AreClockTimes(1)) {
      titles.insert(titles.begin() + 1, "");
    }
  }

  const SampleTable& sample_;
  std::span<const TextLine> lines_;
  const ColumnValues& values_;
  TableFormat& format_;
};

}  // namespace

void FindHeader(const SampleTable& sample, std::span<const TextLine> lines,
                const ColumnValues& values, TableFormat& format) {
  HeaderSearch(sample, lines, values, format).Run();
}

}  // namespace velumar
