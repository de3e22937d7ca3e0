// Price files as vendors and programs write them: the files of flavours/, each with its expected
// result, and random ones.
#include <charconv>
#include <cmath>
#include <iomanip>
#include <nlohmann/json.hpp>
#include <random>
#include <sstream>

#include "base/dates.h"
#include "import/csv_export.h"
#include "import/file_reading.h"
#include "marketdata/index_cache.h"
#include "marketdata/interval.h"
#include "marketdata/metalib_reader.h"
#include "support/scratch_folder.h"

namespace velumar {
namespace {

using nlohmann::json;
using testing::HasSubstr;

const std::filesystem::path kFlavours = FLAVOURS_FOLDER;

ImportOptions OptionsOf(const std::vector<std::string>& arguments) {
  ImportOptions options;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const std::string& flag = arguments[i];
    if (flag == "--adjusted") options.prices = Prices::kAdjusted;
    if (flag == "--unadjusted") options.prices = Prices::kAsTraded;
    if (flag == "--utc") options.utc = true;
    if (i + 1 == arguments.size()) continue;
    const std::string& value = arguments[i + 1];
    if (flag == "--symbol") options.symbol = value;
    if (flag == "--interval") options.interval = IntervalFromText(value);
    if (flag == "--date-format") options.date_format = value;
    if (flag == "--date-order") {
      options.date_order = value == "dmy"   ? DateOrder::kDayMonthYear
                           : value == "mdy" ? DateOrder::kMonthDayYear
                                            : DateOrder::kYearMonthDay;
    }
    if (flag == "--label") options.label = value == "end" ? BarLabel::kEnd : BarLabel::kStart;
    if (flag == "--scale") options.scale = std::stoi(value);
    if (flag == "--from") options.from = DateFromDigits(value);
    if (flag == "--to") options.to = DateFromDigits(value);
    if (flag == "--from-zone") options.from_zone = value;
    if (flag == "--to-zone") options.to_zone = value;
  }
  return options;
}

struct Flavour {
  std::string name;
  json expected;
};

std::vector<Flavour> Flavours() {
  std::vector<Flavour> flavours;
  const json all = json::parse(ReadFile(kFlavours / "expected.json"));
  for (const auto& [name, expected] : all.items()) {
    flavours.push_back({name, expected});
  }
  return flavours;
}

// The rows of a stored series, as texts: date, time or "", and six numbers as floats.
std::vector<std::string> StoredRows(const std::string& data, const json& series,
                                    IndexCache& cache) {
  const int interval = *IntervalFromText(series["interval"].is_string()
                                             ? series["interval"].get<std::string>()
                                             : std::to_string(series["interval"].get<int>()));
  std::vector<std::string> rows;
  std::istringstream lines(CsvOfSeries(data, series["symbol"].get<std::string>(), interval, cache));
  std::string line;
  std::getline(lines, line);
  while (std::getline(lines, line)) {
    if (interval == kDaily) line.replace(9, 1, "");
    rows.push_back(line);
  }
  return rows;
}

std::string RowText(const json& row) {
  std::string text = row[0].get<std::string>() + "," + row[1].get<std::string>();
  for (std::size_t i = 2; i < row.size(); ++i) {
    std::array<char, 64> digits;
    const auto end = std::to_chars(digits.begin(), digits.end(), row[i].get<float>()).ptr;
    text += "," + std::string(digits.data(), end);
  }
  return text;
}

class FlavourTest : public testing::TestWithParam<Flavour> {};

TEST_P(FlavourTest, IsImportedOrAskedAboutAsExpected) {
  const json& expected = GetParam().expected;
  const auto file = kFlavours / expected.value("file", GetParam().name);
  ImportOptions options = OptionsOf(expected["arguments"].get<std::vector<std::string>>());
  options.remember = Remember::kNothing;
  ScratchFolder folder;
  const std::string data = folder.Sub("data");
  IndexCache cache;
  std::string said;
  bool undecided = false;
  try {
    const ImportReport report = ImportFile(file, data, options, cache, nullptr);
    for (const std::string& remark : report.remarks) said += remark + "\n";
    if (report.suggested_scale != 1) said += "decimals";
  } catch (const ImportUndecided& error) {
    undecided = true;
    said = error.what();
  } catch (const std::exception& error) {
    said = error.what();
  }
  if (!expected.contains("series")) {
    EXPECT_FALSE(std::filesystem::exists(data));
    EXPECT_EQ(undecided, expected.contains("question")) << said;
    const auto word = expected.value("question", expected.value("refused", ""));
    EXPECT_THAT(said, HasSubstr(word));
    return;
  }
  ASSERT_TRUE(std::filesystem::exists(data)) << said;
  EXPECT_EQ(SecuritiesOf(data, cache).size(), expected["series"].size()) << said;
  for (const json& series : expected["series"]) {
    std::vector<std::string> rows;
    for (const json& row : series["rows"]) rows.push_back(RowText(row));
    EXPECT_EQ(StoredRows(data, series, cache), rows) << said;
  }
  for (const json& remark : expected.value("remarks", json::array())) {
    EXPECT_THAT(said, HasSubstr(remark.get<std::string>()));
  }
}

std::string NameOfCase(const testing::TestParamInfo<Flavour>& one) {
  std::string name = std::to_string(one.index) + "_" + one.param.name;
  std::ranges::replace_if(
      name, [](char c) { return std::isalnum(c) == 0; }, '_');
  return name;
}

INSTANTIATE_TEST_SUITE_P(All, FlavourTest, testing::ValuesIn(Flavours()), NameOfCase);

// How a random file is written.
class RandomFlavour {
 public:
  explicit RandomFlavour(unsigned seed) : random_(seed) {
    comma_ = Choose(4) == 0;
    separator_ = std::vector<std::string>{",", ";", "\t", "|"}[comma_ ? 1 + Choose(3) : Choose(4)];
    date_ = Choose(6);
    order_ = Choose(3);
    header_ = Choose(3) > 0;
    end_ = std::vector<std::string>{"\n", "\r\n", "\r"}[Choose(3)];
    wide_ = Choose(5) == 0;
    quoted_ = Choose(4) == 0;
    intraday_ = Choose(2) == 0;
  }

  std::vector<Bar> Series() {
    std::vector<Bar> bars;
    int hundredths = 2000 + static_cast<int>(Choose(20000));
    std::int32_t date = 20180101 + static_cast<int>(Choose(27));
    const auto next = [&] { return hundredths += static_cast<int>(Choose(101)) - 50; };
    const std::size_t count = 40 + Choose(100);
    for (std::size_t i = 0; i < count; ++i) {
      Bar bar{.date = date};
      if (intraday_) bar.time = static_cast<int>(9 + i % 8) * 10000;
      if (!intraday_ || i % 8 == 7) date = DaysLater(date, 1 + static_cast<int>(Choose(3) == 0));
      const int prices[] = {next(), next(), next(), next()};
      bar.open = static_cast<float>(prices[0] / 100.0);
      bar.close = static_cast<float>(prices[3] / 100.0);
      bar.high = static_cast<float>(*std::ranges::max_element(prices) / 100.0);
      bar.low = static_cast<float>(*std::ranges::min_element(prices) / 100.0);
      bar.volume = static_cast<float>(1000 + Choose(1'000'000));
      bars.push_back(bar);
    }
    return bars;
  }

  std::string Text(std::vector<Bar> bars) {
    if (order_ == 1) std::ranges::reverse(bars);
    if (order_ == 2) std::ranges::shuffle(bars, random_);
    std::string text;
    if (header_) {
      text = Line(
          intraday_
              ? std::vector<std::string>{"Date", "Time", "Open", "High", "Low", "Close", "Volume"}
              : std::vector<std::string>{"Date", "Open", "High", "Low", "Close", "Volume"});
    }
    for (const Bar& bar : bars) text += Row(bar);
    return wide_ ? Wide(text) : text;
  }

 private:
  std::size_t Choose(std::size_t count) { return random_() % count; }

  std::string Line(const std::vector<std::string>& fields) const {
    std::string line;
    for (const std::string& field : fields) {
      line += (line.empty() ? "" : separator_) + (quoted_ ? "\"" + field + "\"" : field);
    }
    return line + end_;
  }

  std::string Price(float price) const {
    std::ostringstream text;
    text << std::fixed << std::setprecision(2) << price;
    std::string written = text.str();
    if (comma_) std::ranges::replace(written, '.', ',');
    return written;
  }

  std::string Row(const Bar& bar) const {
    static const std::vector<std::string> kDates = {"yyyyMMdd",   "yyyy-MM-dd", "dd.MM.yyyy",
                                                    "MM/dd/yyyy", "yyyy/MM/dd", "dd-MMM-yyyy"};
    std::vector<std::string> fields = {DateText(bar.date, kDates[date_])};
    if (intraday_) {
      const std::string hour = std::to_string(bar.time / 10000);
      fields.push_back((hour.size() == 1 ? "0" : "") + hour + ":00");
    }
    for (const float price : {bar.open, bar.high, bar.low, bar.close}) {
      fields.push_back(Price(price));
    }
    fields.push_back(std::to_string(static_cast<int>(bar.volume)));
    return Line(fields);
  }

  // UTF-16 with a byte order mark.
  static std::string Wide(const std::string& text) {
    std::string wide = "\xFF\xFE";
    for (const char c : text) wide += {c, '\0'};
    return wide;
  }

  std::mt19937 random_;
  bool comma_;
  std::string separator_;
  std::size_t date_;
  std::size_t order_;
  bool header_;
  std::string end_;
  bool wide_;
  bool quoted_;
  bool intraday_;
};

TEST(RandomFlavour, ComesBackTheSameOrRaisesAQuestion) {
  ScratchFolder folder;
  int asked = 0;
  for (unsigned seed = 1; seed <= 300; ++seed) {
    RandomFlavour flavour(seed);
    const std::vector<Bar> bars = flavour.Series();
    const std::string text = flavour.Text(bars);
    folder.Write("ABC.csv", text);
    const ReadPrices read = ReadPriceFile(folder / "ABC.csv", {}, nullptr);
    ASSERT_EQ(read.understanding.refusal, "") << seed << "\n" << text.substr(0, 300);
    asked += read.understanding.questions.empty() ? 0 : 1;
    if (!read.understanding.questions.empty()) continue;
    ASSERT_EQ(read.series.size(), 1U);
    ASSERT_EQ(read.series[0].bars, bars) << seed << "\n" << text.substr(0, 300);
  }
  EXPECT_LT(asked, 30);
}

}  // namespace
}  // namespace velumar
