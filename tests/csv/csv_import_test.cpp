#include "csv/csv_import.h"

#include "csv/csv_export.h"
#include "csv/csv_text.h"
#include "marketdata/index_cache.h"
#include "support/scratch_folder.h"

namespace velumar {
namespace {

// Two files with one cache: the second import must see the first.
TEST(CsvImport, AddsOneFileAfterTheOther) {
  const ScratchFolder folder;
  folder.Write("ONE_D.csv", "date,open,high,low,close\n20200102,1,4,0.5,2\n20200103,2,4,1,2\n");
  folder.Write("two.csv", "day;date;time;open;high;low;close\nThu;02.01.2020;9:30;1;1;1;1\n");
  const std::string data = folder.Sub("data");
  IndexCache cache;
  CsvImportReport report = ImportCsv(folder / "ONE_D.csv", data, {}, cache);
  EXPECT_EQ(report.symbol, "ONE");
  EXPECT_EQ(report.interval, -1);
  EXPECT_EQ(report.bars, 2);
  EXPECT_EQ(report.last_date, 20200103);
  CsvImportOptions options;
  options.interval = 15;
  options.date_format = CsvDateFormat("%d.%m.%Y");
  report = ImportCsv(folder / "two.csv", data, options, cache);
  EXPECT_EQ(report.symbol, "TWO");
  const std::string header = "date,time,open,high,low,close,volume,openinterest\n";
  EXPECT_EQ(CsvOfSeries(data, "ONE", -1, cache),
            header + "20200102,0,1,4,0.5,2,0,0\n20200103,0,2,4,1,2,0,0\n");
  EXPECT_EQ(CsvOfSeries(data, "TWO", 15, cache), header + "20200102,093000,1,1,1,1,0,0\n");
}

TEST(CsvImport, NamesFileLineAndValueAndStoresNothing) {
  const ScratchFolder folder;
  folder.Write("BAD_D.csv", "date,open,high,low,close\n20200102,1,1,1,1\n31.01.2020,1,1,1,1\n");
  IndexCache cache;
  try {
    ImportCsv(folder / "BAD_D.csv", folder.Sub("data"), {}, cache);
    ADD_FAILURE() << "was imported";
  } catch (const CsvError& error) {
    EXPECT_THAT(error.what(), testing::HasSubstr("BAD_D.csv: line 3: the date \"31.01.2020\" is"));
  }
  EXPECT_EQ(folder.Names(), std::vector<std::string>{"BAD_D.csv"});
}

}  // namespace
}  // namespace velumar
