#include <functional>

#include "marketdata/directory_editor.h"
#include "marketdata/market_files.h"
#include "marketdata/metalib_writer.h"
#include "support/traced_child.h"

namespace velumar {

namespace {

// What a reader finds: the bars of three series, empty if there is no such series.
using Found = std::vector<std::vector<Bar>>;

Found FindAll(const ScratchFolder& directory) {
  Found found;
  for (const char* symbol : {"AAA", "BBB", "NEW"}) {
    std::vector<Bar>& bars = found.emplace_back();
    ErrorOf([&] { bars = ReadBars(directory, symbol); });
  }
  return found;
}

// The dates that the index says each series has.
std::vector<std::pair<std::int32_t, std::int32_t>> DatesIn(const ScratchFolder& directory) {
  IndexCache cache;
  std::vector<std::pair<std::int32_t, std::int32_t>> dates;
  for (const SecurityInfo& listed : SecuritiesOf(directory.Text(), cache)) {
    dates.emplace_back(listed.indexed_first_date, listed.indexed_last_date);
  }
  return dates;
}

// Programs that trust the count would read bars that aren't there. A bar that could not be added is
// later than the store may show, so not even its bytes may stay.
void ExpectCountFitsFile(const ScratchFolder& directory, bool exactly) {
  constexpr std::size_t kRecord = 28;
  const std::string data = directory.Read("F1.DAT");
  const auto counted = static_cast<unsigned char>(data.at(2)) +
                       static_cast<std::size_t>(static_cast<unsigned char>(data.at(3))) * 256;
  EXPECT_LE(counted * kRecord, data.size());
  EXPECT_TRUE(!exactly || counted * kRecord == data.size());
}

constexpr int kBars = 200;

Bar Numbered(int i) { return DailyBar((2000 + i / 28) * 10000 + 101 + i % 28, 50); }

// `full`: MASTER has no file number left.
ScratchFolder Prepared(bool full = false) {
  ScratchFolder directory(MemoryFolder());
  std::vector<Listed> listed = {{.number = 1}, {.number = 2, .symbol = "BBB", .fields = 5}};
  for (int i = 3; full && i <= 255; ++i) {
    listed.push_back({.number = i, .symbol = "S" + std::to_string(i)});
  }
  directory.Write("MASTER", Master(listed));
  directory.Write("EMASTER", Emaster(listed));
  std::vector<Bar> bars;
  for (int i = 0; i < kBars; ++i) bars.push_back(Numbered(2 * i));
  directory.Write("F1.DAT", DailyBytes(bars));
  const std::string record = Word(1000103) + Word(1) + Word(2) + Word(3) + Word(4);
  directory.Write("F2.DAT", DataBytes(5, 2, {record}));
  return directory;
}

struct Case {
  const char* name;
  std::function<void(const std::string& directory)> work;
  bool full = false;
};

Case WriterCase(const char* name, const std::function<void(MetaLibWriter&)>& change) {
  return {name, [change](const std::string& directory) {
            IndexCache cache;
            MetaLibWriter writer(cache);
            writer.OpenDirectory(directory);
            writer.SelectSeries("AAA", 1, -1);
            change(writer);
            writer.CloseDirectory();
          }};
}

Case StoreCase(const char* name, const char* symbol, bool full = false) {
  return {name,
          [symbol](const std::string& directory) {
            IndexCache cache;
            StoreSecurity(directory, {symbol, "Name", -1}, {Numbered(3), Numbered(4)}, cache);
          },
          full};
}

// Several at once. Throws the first problem.
void StoreGroup(const std::string& directory) {
  IndexCache cache;
  std::vector<NewSeries> all;
  for (const char* symbol : {"NEW", "AAA", "BBB"}) {
    all.push_back({{symbol, "Name", -1}, {Numbered(3), Numbered(4)}});
  }
  for (const auto& problem : HeldDirectory(directory).Store(std::move(all), cache)) {
    if (problem) throw MetaLibError(*problem);
  }
}

Case PutCase(const char* name, const Bar& bar) {
  return WriterCase(name, [bar](MetaLibWriter& writer) {
    writer.AppendBar(bar.date, 0, 1, bar.high, bar.low, bar.close, bar.volume, bar.open_interest);
  });
}

std::vector<Case> Cases() {
  return {
      PutCase("append", Numbered(2 * kBars)),
      PutCase("replace", Numbered(2 * kBars - 2)),
      // Record 146 spans two pages of the file.
      PutCase("replace across pages", Numbered(2 * 145)),
      PutCase("insert", Numbered(5)),
      WriterCase("delete last",
                 [](auto& writer) { writer.DeleteDailyBar(Numbered(2 * kBars - 2).date); }),
      WriterCase(
          "write",
          [](auto& writer) {
            const std::vector<float> ones = {1, 1};
            writer.WriteSeries({20200101, 20200102}, {0, 0}, ones, ones, ones, ones, ones, ones);
          }),
      StoreCase("store a new one", "NEW"),
      StoreCase("store another in its place", "AAA"),
      StoreCase("store a wider one in its place", "BBB"),
      StoreCase("store a wider one in XMASTER", "BBB", true),
      {"store several", StoreGroup},
  };
}

// Everything new is flushed before the first rename, and each round of renames before the next.
TEST(KillPoints, AnImportIsFlushedBeforeEachRoundOfRenames) {
  for (const char* symbol : {"NEW", "AAA", "BBB"}) {
    const auto directory = Prepared();
    const std::string calls = DiskCallsOf([&] { StoreCase("", symbol).work(directory.Text()); });
    if (calls.empty()) GTEST_SKIP() << "no permission to trace a process";
    EXPECT_EQ(calls, "WFFFRFRRF") << symbol;
  }
}

// Of several securities, one that moves to another file comes last, by itself.
TEST(KillPoints, AGroupIsFlushedBeforeItsRenames) {
  const auto directory = Prepared();
  const std::string calls = DiskCallsOf([&] { StoreGroup(directory.Text()); });
  if (calls.empty()) GTEST_SKIP() << "no permission to trace a process";
  EXPECT_EQ(calls, "WFFFFRRFRRFWFFFRFRRF");
}

// A disk that stays broken keeps what a kill at that moment would leave.
TEST(KillPoints, ASeriesIsAsBeforeOrAfterWhateverCallFails) {
  if (!CanTrace()) GTEST_SKIP() << "no permission to trace a process";
  const Found before = FindAll(Prepared());
  for (const Case& one : Cases()) {
    SCOPED_TRACE(one.name);
    const auto done = Prepared(one.full);
    one.work(done.Text());
    const Found after = FindAll(done);
    int refused = 0;
    ForEachFault([&](const DiskFault& fault) {
      const auto directory = Prepared(one.full);
      const FailedWork failed = FailAt(fault.number, fault.error, fault.stays_broken, [&] {
        return ErrorOf([&] { one.work(directory.Text()); }) == 0 ? 0 : 2;
      });
      if (!failed.reached) return false;
      const Found found = FindAll(directory);
      const bool refuses = failed.exit_code == 2;
      EXPECT_TRUE(refuses || failed.exit_code == 0);
      EXPECT_TRUE(refuses || DatesIn(directory) == DatesIn(done));
      ExpectCountFitsFile(directory, one.name == std::string("append") && !fault.stays_broken);
      for (std::size_t i = 0; i < found.size(); ++i) {
        EXPECT_TRUE(found[i] == after[i] || (refuses && found[i] == before[i]));
      }
      refused += refuses ? 1 : 0;
      one.work(directory.Text());
      EXPECT_EQ(FindAll(directory), after) << "done again";
      return true;
    });
    EXPECT_GT(refused, 2);
  }
}

// The gap between its old bars would suggest other minutes.
TEST(KillPoints, ASeriesOfUnknownMinutesKeepsItsMinutesWhateverCallFails) {
  if (!CanTrace()) GTEST_SKIP() << "no permission to trace a process";
  const auto write = [](const std::string& directory) {
    IndexCache cache;
    MetaLibWriter writer(cache);
    writer.OpenDirectory(directory);
    writer.SelectSeries("AAA", 0, 15);
    const std::vector<float> ones = {1, 1};
    writer.WriteSeries({20050103, 20050103}, {93000, 100000}, ones, ones, ones, ones, ones, ones);
    writer.CloseDirectory();
  };
  const int faults = ForEachFault([&](const DiskFault& fault) {
    const ScratchFolder directory(MemoryFolder());
    directory.Write("MASTER", Master({{.frame = 'I', .fields = 8}}));
    directory.Write("F1.DAT",
                    IntradayBytes({TimedBar(20050103, 93000), TimedBar(20050103, 94500)}));
    const FailedWork failed = FailAt(fault.number, fault.error, fault.stays_broken,
                                     [&] { return ErrorOf([&] { write(directory.Text()); }); });
    EXPECT_EQ(ErrorOf([&] { EXPECT_EQ(ReadBars(directory, "AAA", 15).size(), 2U); }), 0);
    return failed.reached;
  });
  EXPECT_GT(faults, 10);
}

TEST(KillPoints, AWriterKnowsWhatAnotherStoredBeforeItHadTheLock) {
  const auto directory = Prepared();
  TracedChild child([&] {
    return ErrorOf([&] {
      IndexCache cache;
      MetaLibWriter writer(cache);
      writer.OpenDirectory(directory.Text());
      writer.SelectSeries("NEW", 1, -1);
    });
  });
  if (!child.Traced()) GTEST_SKIP() << "no permission to trace a process";
  bool stored = false;
  child.Run([&] {
    if (stored || child.Call() != SYS_openat || !child.AtChange(Locks::kWork)) return;
    StoreCase("", "NEW").work(directory.Text());  // as the lock file is about to be opened
    stored = true;
  });
  EXPECT_EQ(child.ExitCode(), 0);
}

}  // namespace

}  // namespace velumar
