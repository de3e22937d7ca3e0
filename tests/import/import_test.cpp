// Price files into a market data directory.
#include <array>
#include <map>
#include <nlohmann/json.hpp>
#include <thread>

#include "import/csv_export.h"
#include "import/import_memory.h"
#include "import/price_import.h"
#include "marketdata/directory_lock.h"
#include "marketdata/index_cache.h"
#include "marketdata/interval.h"
#include "marketdata/metalib_error.h"
#include "marketdata/metalib_reader.h"
#include "support/scratch_folder.h"

namespace velumar {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::ThrowsMessage;

const std::string kHeader = "Date,Open,High,Low,Close\n";

// Of January 2020, with the day as the price.
std::string Days(int first, int last, int price = 0) {
  std::string text;
  for (int day = first; day <= last; ++day) {
    text += std::to_string(20200100 + day);
    for (int i = 0; i < 4; ++i) text += "," + std::to_string(price == 0 ? day : price);
    text += "\n";
  }
  return text;
}

class Import : public testing::Test {
 protected:
  std::string File(const std::string& name, const std::string& text) const {
    folder.Write(name, text);
    return folder.Sub(name);
  }
  ImportReport Take(const std::string& file, const ImportOptions& options = {}) {
    return ImportFile(file, data, options, cache, nullptr);
  }
  // "3 new, 1 changed, 2 kept"
  std::string Taken(const std::string& file, const ImportOptions& options = {}) {
    const ImportReport report = Take(file, options);
    const ImportedSeries& series = report.series.at(0);
    return std::to_string(series.added) + " new, " + std::to_string(series.changed) + " changed, " +
           std::to_string(series.kept) + " kept";
  }
  std::string Stored(const std::string& symbol, int interval = kDaily) {
    return CsvOfSeries(data, symbol, interval, cache);
  }
  std::string NameOf(const std::string& symbol) {
    for (const SecurityInfo& one : SecuritiesOf(data, cache)) {
      if (one.symbol == symbol) return one.name;
    }
    return "";
  }

  ScratchFolder folder;
  std::string data = folder.Sub("data");
  IndexCache cache;
};

TEST_F(Import, AddsBarsAndCorrectsThem) {
  EXPECT_EQ(Taken(File("ABC_D.csv", kHeader + Days(1, 10))), "10 new, 0 changed, 0 kept");
  const auto before = FilesOf(data);
  EXPECT_EQ(Taken(folder.Sub("ABC_D.csv")), "0 new, 0 changed, 0 kept");
  EXPECT_EQ(FilesOf(data), before) << "the same file again changes nothing";
  EXPECT_EQ(Taken(folder.Sub("ABC_D.csv"), {.name = "Abc of Rome"}), "0 new, 0 changed, 0 kept");
  EXPECT_EQ(NameOf("ABC"), "Abc of Rome");

  const std::string newer = kHeader + Days(6, 6) + Days(8, 8, 9) + Days(10, 12);
  EXPECT_EQ(Taken(File("ABC_D.csv", newer)), "2 new, 1 changed, 2 kept");
  const std::string stored = Stored("ABC");
  EXPECT_THAT(stored, HasSubstr("20200107,0,7,7,7,7,0,0\n20200108,0,9,9,9,9,0,0\n"));
  EXPECT_THAT(stored, HasSubstr("20200101,0,1,"));

  EXPECT_EQ(Taken(folder.Sub("ABC_D.csv"), {.replace = true}), "5 new, 0 changed, 0 kept");
  EXPECT_THAT(Stored("ABC"), testing::Not(HasSubstr("20200101")));
}

TEST_F(Import, MakesASecurityOfEachTicker) {
  const ImportReport report = Take(File("all.txt",
                                        "Ticker,Date,Close\nAAA,20200101,1\nbbb,20200101,1\n"
                                        "A_TICKER_THAT_IS_TOO_LONG,20200101,1\n"));
  ASSERT_EQ(report.series.size(), 3U);
  EXPECT_EQ(report.series[1].found.symbol, "BBB");
  EXPECT_EQ(report.series[1].error, "");
  EXPECT_THAT(report.series[2].error, HasSubstr("A_TICKER"));
  EXPECT_EQ(SecuritiesOf(data, cache).size(), 2U);
  EXPECT_THAT([&] { Take(folder.Sub("all.txt"), {.symbol = "CCC"}); },
              ThrowsMessage<ImportError>(HasSubstr("all.txt: holds 3 tickers")));
}

TEST_F(Import, AsksAboutAdjustedPrices) {
  const std::string file =
      File("ABC_D.csv",
           "Date,Open,High,Low,Close,Adj Close\n2020-01-02,10,12,8,10,5\n2020-01-03,10,12,8,10,10\n"
           "2020-01-06,0,0,0,0,0\n2020-01-07,10,12,8,10,9\n");
  EXPECT_THAT(UnderstandFile(File("OIL_D.csv",
                                  "Date,Close,Adj Close\n2020-04-20,-37.63,-37.63\n"
                                  "2020-04-21,10.01,10.01\n"),
                             {}, nullptr)
                  .questions,
              IsEmpty());
  const Understanding understood = UnderstandFile(file, {}, nullptr);
  ASSERT_EQ(understood.questions.size(), 1U);
  EXPECT_EQ(understood.questions[0].answers[1].result, "close of 2 January 2020: 5");
  EXPECT_THAT([&] { Take(file); }, ThrowsMessage<ImportUndecided>(HasSubstr("--unadjusted")));
  EXPECT_FALSE(std::filesystem::exists(data));
  Take(file, understood.questions[0].answers[1].options);
  EXPECT_THAT(Stored("ABC"), HasSubstr("20200102,0,5,6,4,5,0,0\n20200103,0,10,12,8,10,0,0\n"
                                       "20200106,0,0,0,0,0,0,0\n"));
}

TEST_F(Import, AsksWhichComesFirstAndWhatTheSymbolIs) {
  const std::string file = File("a price file of the year.csv",
                                "Date,Open,High,Low,Close\n01/02/2020,1,1,1,1\n02/02/2020,1,1,1,1\n"
                                "03/02/2020,1,1,1,1\n");
  const Understanding dates = UnderstandFile(file, {}, nullptr);
  ASSERT_EQ(dates.questions.size(), 1U);
  EXPECT_EQ(dates.questions[0].answers.at(0).result, "1 February 2020 to 3 February 2020");
  EXPECT_EQ(dates.questions[0].answers.at(1).result, "2 January 2020 to 2 March 2020");
  const Understanding symbol = UnderstandFile(file, dates.questions[0].answers[0].options, nullptr);
  ASSERT_EQ(symbol.questions.size(), 1U);
  EXPECT_EQ(symbol.questions[0].option, "--symbol TEXT");
  EXPECT_TRUE(UnderstandFile(file, symbol.questions[0].answers.at(0).options, nullptr).Ready());
}

TEST_F(Import, ShowsTheFirstLinesOfAFileWithoutBars) {
  const auto first_lines = [this](const std::string& text) {
    std::string lines;
    for (const SampleRow& row : UnderstandFile(File("a.csv", text), {}, nullptr).head) {
      lines += std::to_string(row.line) + ":" + row.text + (row.bar.date == 0 ? "|" : " a bar|");
    }
    return lines;
  };
  EXPECT_EQ(first_lines("Prices\r\n\r\nnone"), "1:Prices|2:|3:none|");
  EXPECT_EQ(first_lines("Date,Close\n120345,1\n"), "1:Date,Close|2:120345,1|") << "a question";
  EXPECT_EQ(first_lines(std::string("\x89PNG\0\0\0", 7)), "");
  std::string accents;
  for (int i = 0; i < 300; ++i) accents += "\u00e9";
  EXPECT_EQ(first_lines(accents), "1:" + accents.substr(0, 500) + "...|");
  EXPECT_THAT(first_lines("x" + accents), HasSubstr("\u00e9...|")) << "no half letter";
}

TEST_F(Import, MultipliesPricesThatCannotBeTraded) {
  std::string text = kHeader;
  for (int day = 1; day <= 20; ++day) {
    text += std::to_string(20200100 + day) + ",1.19878,1.19999,1.19801,1.19978\n";
  }
  const std::string file = File("EURUSD_D.csv", text);
  EXPECT_EQ(Take(file).suggested_scale, 10000) << "imported as it is";
  ImportOptions options;
  options.scale = 10000;
  EXPECT_THAT([&] { Take(file, options); }, ThrowsMessage<ImportError>(HasSubstr("--replace")));
  options.replace = true;
  EXPECT_EQ(Take(file, options).suggested_scale, 1);
  EXPECT_EQ(NameOf("EURUSD"), "EURUSD x10000");
  EXPECT_THAT(Stored("EURUSD"), HasSubstr("20200101,0,11987.8,11999.9,11980.1,11997.8,"));
  options.replace = false;
  EXPECT_EQ(Taken(file, options), "0 new, 0 changed, 0 kept");
  EXPECT_THAT([&] { Take(file); }, ThrowsMessage<ImportError>(HasSubstr("--scale 10000")));
  options = {};
  options.replace = true;
  Take(file, options);
  EXPECT_EQ(NameOf("EURUSD"), "EURUSD");
  // A share with noise in its decimals can be traded.
  EXPECT_EQ(
      UnderstandFile(File("NOISE_D.csv", kHeader + "20200101,170.330002,171.119995,169,170\n"), {},
                     nullptr)
          .suggested_scale,
      1);
}

TEST_F(Import, KeepsAWholeBarOfWhichANewerFileHasTheEnd) {
  const auto minutes = [](int first, int last) {
    std::string text = "Date,Time,Open,High,Low,Close,Volume\n";
    for (int i = first; i < last; ++i) {
      const std::string price = std::to_string(i + 1);
      text += "20200102," + std::to_string(10000 + i / 60 * 100 + i % 60).substr(1);
      for (int k = 0; k < 4; ++k) text += "," + price;
      text += ",1\n";
    }
    return text;
  };
  const ImportOptions options = {.interval = 60};
  EXPECT_EQ(Taken(File("ABC.csv", minutes(570, 720)), options), "3 new, 0 changed, 0 kept");
  const std::string before = Stored("ABC", 60);
  EXPECT_THAT(before, HasSubstr("\n20200102,100000,601,660,601,660,60,0\n"));
  EXPECT_EQ(Taken(File("ABC.csv", minutes(637, 780)), options), "1 new, 0 changed, 0 kept");
  EXPECT_THAT(Stored("ABC", 60), testing::StartsWith(before));
}

TEST_F(Import, NeverMixesTickersScalesOrZones) {
  const Understanding tickers = UnderstandFile(
      File("all.csv", "Ticker,Date,Close\nabc,20200101,1\nABC,20200102,2\nabc ,20200103,3\n"), {},
      nullptr);
  ASSERT_EQ(tickers.series.size(), 1U) << "case and blanks make no other security";
  EXPECT_EQ(tickers.series[0].bars, 3);

  const std::string file = File("ABC_D.csv", kHeader + Days(1, 3));
  EXPECT_THAT([&] { Take(file, {.name = std::string(45, 'x'), .scale = 100}); },
              ThrowsMessage<ImportError>(HasSubstr("shorter --name")));
  EXPECT_THAT([&] { Take(file, {.to_zone = "Mars/Base"}); },
              ThrowsMessage<ImportError>(HasSubstr("\"Mars/Base\"")));

  EXPECT_THAT([&] { Take(File("S_D.csv", "Date;Close\n02.01.2020;1.234\n03.01.2020;1.235\n")); },
              ThrowsMessage<ImportUndecided>(HasSubstr("Set --decimal comma or point.")));
  EXPECT_THAT([&] { Take(File("S_D.csv", "Date,Close\n010203,1.5\n020203,1.5\n")); },
              ThrowsMessage<ImportUndecided>(HasSubstr("--date-format")));
  Take(File("UTC_60.csv", "Date,Time,Close\n20200102,02:00+02:00,1\n20200102,03:00+02:00,2\n"),
       {.utc = true});
  EXPECT_THAT(Stored("UTC", 60), HasSubstr("\n20200102,000000,1,"));
}

TEST_F(Import, ChangesNothingIfItIsCancelledOrMeantForAWorkingStore) {
  const std::string file = File("ABC_D.csv", kHeader + Days(1, 5));
  EXPECT_THROW(ImportFile(file, data, {}, cache, [](double) { return false; }), ImportCancelled);
  EXPECT_FALSE(std::filesystem::exists(data));
  std::filesystem::create_directory(data);
  WriteFile(std::filesystem::path(data) / kWorkingStoreMark, "");
  const auto before = FilesOf(data);
  EXPECT_THAT([&] { Take(file); }, ThrowsMessage<ImportError>(HasSubstr("working store")));
  EXPECT_EQ(FilesOf(data), before);
}

TEST_F(Import, LosesNothingIfAnotherOneRunsAtTheSameTime) {
  constexpr int kFiles = 10;
  for (int day = 1; day <= 2 * kFiles; ++day) {
    File("d" + std::to_string(day) + ".csv", kHeader + Days(day, day));
  }
  const auto take = [this](int first_day) {
    IndexCache own;
    for (int day = first_day; day < first_day + kFiles; ++day) {
      const std::string file = folder.Sub("d" + std::to_string(day) + ".csv");
      ImportFile(file, data, {.symbol = "ABC"}, own, nullptr);
    }
  };
  std::thread other(take, 1 + kFiles);
  take(1);
  other.join();
  EXPECT_EQ(SecuritiesOf(data, cache).at(0).bars, 2 * kFiles);
  EXPECT_EQ(RememberedImports(data).size(), std::size_t{2} * kFiles);
}

// Two files of one series, and one that fails, in the same group.
TEST_F(Import, ReportsEachOfSeveralFilesOnceItIsStored) {
  std::vector<std::string> reports;
  const auto report = [&](const ImportedFile& file) {
    const std::string name = file.file.filename().string();
    reports.push_back(name + (file.problem.empty() ? "" : " failed"));
    for (const ImportedSeries& one : file.report.series) {
      reports.back() +=
          ": " + std::to_string(one.added) + " new, " + std::to_string(one.changed) + " changed";
      EXPECT_FALSE(Stored(one.found.symbol).empty()) << name;
    }
  };
  const auto import = [&](const std::vector<std::string>& names) {
    reports.clear();
    PriceImports imports(data, cache, report);
    for (const std::string& name : names) imports.Add(folder.Sub(name), {}, nullptr);
    imports.Finish();
    return reports;
  };
  std::filesystem::create_directory(folder / "b");
  File("ABC_D.csv", kHeader + Days(1, 5));
  File("b/ABC_D.csv", kHeader + Days(4, 9, 7));
  File("bad_D.csv", "a,b\n1,2\n");
  File("OTHER_D.csv", kHeader + Days(1, 3));
  EXPECT_THAT(import({"bad_D.csv"}), ElementsAre("bad_D.csv failed"));
  EXPECT_FALSE(std::filesystem::exists(data));
  EXPECT_THAT(import({"OTHER_D.csv", "ABC_D.csv", "bad_D.csv", "b/ABC_D.csv"}),
              ElementsAre("OTHER_D.csv: 3 new, 0 changed", "ABC_D.csv: 5 new, 0 changed",
                          "bad_D.csv failed", "ABC_D.csv: 4 new, 2 changed"));
  EXPECT_EQ(SecuritiesOf(data, cache).at(0).symbol, "OTHER");
  EXPECT_EQ(SecuritiesOf(data, cache).at(1).bars, 9);
  EXPECT_EQ(RememberedImports(data).size(), 3U);
  EXPECT_THAT(import({"b/../b/ABC_D.csv"}), ElementsAre("ABC_D.csv: 0 new, 0 changed"));
  EXPECT_EQ(RememberedImports(data).size(), 3U) << "the same file";
}

TEST_F(Import, SaysThatALongNameIsCut) {
  const std::string file = File("ABC_D.csv", kHeader + Days(1, 3));
  const std::string name = "\u00DCberseehandel " + std::string(40, 'x');
  EXPECT_THAT(Take(file, {.name = name}).remarks,
              ElementsAre(HasSubstr("cut to \"\u00DCberseehandel xxx")));
  EXPECT_EQ(NameOf("ABC"), "\u00DCberseehandel " + std::string(31, 'x'));
}

TEST_F(Import, NamesTheColumnThatMayBeTheMissingVolume) {
  const auto remarks = [&](const std::string& header, const std::string& before,
                           const std::array<std::string, 3>& after) {
    std::string text = header;
    for (int day = 2; day < 5; ++day) {
      text += "2020010" + std::to_string(day) + before + ",10,11,9,10.5" + after[day - 2] + "\n";
    }
    const Understanding understood = UnderstandFile(File("ABC_D.csv", text), {}, nullptr);
    EXPECT_TRUE(understood.Ready()) << text << understood.refusal;
    return understood.remarks;
  };
  const auto taken = [](const std::string& column) {
    return ElementsAre(
        HasSubstr("a column that may be the volume was not taken: " + column + "; name it"));
  };
  const std::string prices = "Date,Open,High,Low,Close";
  EXPECT_THAT(remarks(prices + ",Kurssi,Vaihto,Kpl\n", "",
                      {",10.4,7000,30", ",10.3,8100,20", ",10.4,7400,40"}),
              taken("\"Vaihto\", \"Kpl\""));
  EXPECT_THAT(remarks(prices + ",\n,,,,,Shares\n", "", {",7000", ",8100", ",7400"}),
              taken("number 6"));
  EXPECT_THAT(remarks("", ",7000.5", {"", "", ""}), IsEmpty()) << "the same in every row";
  EXPECT_THAT(remarks(prices + ",Vaihto,Volume\n", "", {",70,7", ",81,8", ",74,7"}), IsEmpty());
  EXPECT_THAT(remarks(prices + ",Change,Mean,Row,Yield,Paid\n", "",
                      {",-1,10.4,1,3%,0", ",1,10.3,2,4%,5", ",1,10.4,3,3%,0"}),
              IsEmpty());
  File("DEF_D.csv", "20200102,7000,10,11,9,10.5\n20200103,8100,10,11,9,10.5\n");
  EXPECT_THAT(UnderstandFile(folder.Sub("DEF_D.csv"), {}, nullptr).remarks, taken("number 2"));
}

TEST_F(Import, KeepsMergedSeriesPlayable) {
  const auto minutes = [](int first_day, int days) {
    std::string text = "Date,Time,Open,High,Low,Close\n";
    for (int day = first_day; day < first_day + days; ++day) {
      for (int minute = 0; minute < 1440; minute += 5) {
        const std::string time = std::to_string(10000 + minute / 60 * 100 + minute % 60).substr(1);
        text += std::to_string(20200000 + (1 + day / 28) * 100 + day % 28 + 1) + "," + time +
                ",1,1,1,1\n";
      }
    }
    return text;
  };
  ImportOptions options = {.symbol = "ABC"};
  EXPECT_EQ(Taken(File("a.csv", minutes(0, 100)), options), "28800 new, 0 changed, 0 kept");
  const std::string more = File("b.csv", minutes(100, 50));
  EXPECT_THAT([&] { Take(more, options); },
              ThrowsMessage<ImportUndecided>(HasSubstr("has 43,200 bars; a run can play 32,768. "
                                                       "Set --last")));
  std::vector<ImportQuestion> questions;
  PriceImports imports(data, cache,
                       [&](const ImportedFile& one) { questions = one.report.questions; });
  imports.Add(more, options, nullptr);
  imports.Finish();
  ASSERT_EQ(questions.size(), 1U);
  std::map<std::string, ImportOptions> answers;
  for (const auto& answer : questions[0].answers) {
    answers[answer.text + ": " + answer.result] = answer.options;
  }
  EXPECT_EQ(answers.size(), 8U);
  EXPECT_EQ(Taken(more, answers["bars of 60 minutes: 1,200 bars of this file"]),
            "1200 new, 0 changed, 0 kept");
  EXPECT_EQ(Taken(more, answers["one series for each year: 2020 of this file"]),
            "14400 new, 0 changed, 0 kept");
  EXPECT_NE(NameOf("ABC-2020"), "");
  options = answers["keep the last 32,768 bars: from 9 February 2020"];
  EXPECT_EQ(Taken(more, options), "14400 new, 0 changed, 0 kept");
  const SecurityInfo kept = SecuritiesOf(data, cache).at(0);
  EXPECT_EQ(kept.bars, 32768);
  EXPECT_EQ(std::pair(kept.first_date, kept.last_date), std::pair(20200209, 20200610));
}

std::vector<std::string> UpdatedNames(const std::vector<ImportedFile>& files) {
  std::vector<std::string> names;
  for (const ImportedFile& file : files) {
    names.push_back(file.file.filename().string() + (file.problem.empty() ? "" : " failed"));
  }
  return names;
}

TEST_F(Import, IsRepeatedForFilesThatChanged) {
  ScratchFolder prices;
  const auto update = [&] { return UpdatedNames(UpdateImports(data, cache, nullptr)); };
  EXPECT_THAT(update(), IsEmpty());
  prices.Write("ABC_D.csv", kHeader + Days(1, 5));
  prices.Write("OTHER_D.csv", kHeader + Days(1, 5));
  Take(prices.Sub("ABC_D.csv"), {.name = "Abc of Zürich"});
  EXPECT_THAT(update(), IsEmpty()) << "only the file was imported, not its folder";
  prices.Write("ABC_D.csv", kHeader + Days(1, 6));
  EXPECT_THAT(update(), ElementsAre("ABC_D.csv"));
  EXPECT_THAT(Stored("ABC"), HasSubstr("20200106"));
  EXPECT_EQ(NameOf("ABC"), "Abc of Zürich");
  EXPECT_THAT(update(), IsEmpty());
  prices.Write("ABC_D.csv", kHeader + Days(1, 6, 7));
  EXPECT_THAT(update(), ElementsAre("ABC_D.csv")) << "corrected prices, in as many bytes";
  prices.Write("ABC_D.csv", kHeader + Days(1, 6, 8));
  using Clock = std::filesystem::file_time_type::clock;
  std::filesystem::last_write_time(prices / "ABC_D.csv", Clock::now() - std::chrono::hours(1));
  EXPECT_THAT(update(), ElementsAre("ABC_D.csv")) << "an older file was put back";

  Take(prices.Sub("ABC_D.csv"),
       {.symbol = "ABC", .name = "Abc", .replace = true, .remember = Remember::kFolder});
  prices.Write("bank.csv", "a,b\n1,2\n");
  EXPECT_THAT(update(), ElementsAre("OTHER_D.csv", "bank.csv failed"));
  EXPECT_EQ(NameOf("OTHER"), "OTHER");
  prices.Write("bank.csv", kHeader + Days(1, 3));
  prices.Write("ABC_D.csv", kHeader + Days(6, 7));
  EXPECT_THAT(update(), ElementsAre("ABC_D.csv", "bank.csv"));
  EXPECT_THAT(Stored("ABC"), HasSubstr("20200101")) << "it was replaced once";
  // New files share only what all of the folder's files share.
  Take(prices.Sub("ABC_D.csv"), {.from = 20200107, .remember = Remember::kFolder});
  std::filesystem::remove(prices / "ABC_D.csv");
  prices.Write("NEW_D.csv", kHeader + Days(1, 7));
  EXPECT_THAT(update(), ElementsAre("NEW_D.csv"));
  EXPECT_THAT(Stored("NEW"), HasSubstr("20200101"));
}

TEST_F(Import, ForgetsTheOldestOfTooManyFiles) {
  std::filesystem::create_directory(data);
  std::vector<RememberedFile> files;
  for (int i = 0; i <= 20000; ++i) files.push_back({.file = folder / std::to_string(i)});
  EXPECT_EQ(RememberImports(data, files), "");
  const std::vector<RememberedFile> kept = RememberedImports(data);
  ASSERT_EQ(kept.size(), 20000U);
  EXPECT_EQ(kept.front().file.filename(), "1");
  EXPECT_EQ(kept.back().file.filename(), "20000");
}

TEST_F(Import, TrustsNoDamagedMemory) {
  const std::string file = File("ABC_D.csv", kHeader + Days(1, 5));
  Take(file);
  const std::filesystem::path memory = std::filesystem::path(data) / kImportMemory;
  const auto good = nlohmann::json::parse(ReadFile(memory));
  EXPECT_EQ(RememberedImports(data).size(), 1U);
  const ImportOptions all = {.symbol = "A",
                             .name = "B",
                             .interval = 5,
                             .date_format = "%d",
                             .date_order = DateOrder::kMonthDayYear,
                             .decimal_comma = true,
                             .prices = Prices::kAdjusted,
                             .label = BarLabel::kEnd,
                             .scale = 100,
                             .from = 20200101,
                             .to = 20201231,
                             .from_zone = "UTC",
                             .to_zone = "Asia/Tokyo",
                             .utc = true,
                             .too_long = TooLong::kSplitByYear,
                             .remember = Remember::kFolder};
  EXPECT_EQ(RememberImports(data, {{.file = file, .options = all}}), "");
  EXPECT_TRUE(RememberedImports(data).at(0).options == all);
  const auto with = [&](const char* pointer, const nlohmann::json& value) {
    nlohmann::json bad = good;
    bad[nlohmann::json::json_pointer(pointer)] = value;
    return bad.dump();
  };
  for (const std::string& bad :
       {std::string("{"), with("/version", 2), with("/files/0/file", "relative.csv"),
        with("/files/0/file", 7), with("/files/0/options/interval", 7),
        with("/files/0/options/interval", (std::int64_t{1} << 32) + 5),
        with("/files/0/options/interval", 5.5), with("/files/0/options/scale", 3),
        with("/files/0/options/from", 20201341), with("/files/0/options/too_long", "no"),
        with("/files/0/options/symbol", "A\nB"),
        with("/files/0/options/symbol", std::string(5000, 'A'))}) {
    WriteFile(memory, bad);
    EXPECT_THAT([&] { UpdateImports(data, cache, nullptr); },
                ThrowsMessage<ImportError>(HasSubstr("is damaged")))
        << bad.substr(0, 200);
    EXPECT_THAT(Take(file).remarks, ElementsAre(HasSubstr("not remembered")));
    EXPECT_EQ(ReadFile(memory), bad);
  }
}

}  // namespace
}  // namespace velumar
