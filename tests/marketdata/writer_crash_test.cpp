#include <gtest/gtest.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <functional>
#include <new>
#include <random>

#include "marketdata/directory_editor.h"
#include "marketdata/index_cache.h"
#include "marketdata/market_files.h"
#include "marketdata/metalib_reader.h"
#include "marketdata/metalib_writer.h"

namespace velumar {

namespace {

// A counter that a child process counts up and its parent reads.
class SharedCounter {
 public:
  SharedCounter()
      : count_(new (mmap(nullptr, sizeof(std::atomic<int>), PROT_READ | PROT_WRITE,
                         MAP_SHARED | MAP_ANONYMOUS, -1, 0)) std::atomic<int>(0)) {}
  ~SharedCounter() { munmap(count_, sizeof *count_); }
  SharedCounter(const SharedCounter&) = delete;
  SharedCounter& operator=(const SharedCounter&) = delete;

  std::atomic<int>& operator*() const { return *count_; }

 private:
  std::atomic<int>* count_;
};

class Child {
 public:
  explicit Child(const std::function<void()>& work) : process_(fork()) {
    if (process_ != 0) return;
    work();
    _exit(0);
  }
  ~Child() { Kill(); }
  Child(const Child&) = delete;
  Child& operator=(const Child&) = delete;

  void Kill() {
    if (process_ <= 0) return;
    kill(process_, SIGKILL);
    waitpid(process_, nullptr, 0);
    process_ = 0;
  }

  bool EndsWell() {
    int status = 0;
    waitpid(process_, &status, 0);
    process_ = 0;
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
  }

 private:
  pid_t process_;
};

// Call number `n` of an endless, settled sequence of writing calls; each works on `writer` and on
// the bars as they must be after it.
void Call(int n, MetaLibWriter* writer, std::vector<Bar>& bars) {
  std::mt19937 random(static_cast<unsigned>(n));
  const int date = 20050101 + static_cast<int>(random() % 300);
  const auto kind = random() % 10;
  if (n % 40 == 0) {
    bars.clear();
    for (int i = 0; i < 300; i += 2) bars.push_back(DailyBar(20050101 + i, static_cast<float>(n)));
    if (writer == nullptr) return;
    std::vector<int> dates;
    for (const Bar& bar : bars) dates.push_back(bar.date);
    const auto all = [&](float value) { return std::vector<float>(bars.size(), value); };
    const Bar& one = bars.front();
    writer->WriteSeries(dates, std::vector<int>(bars.size()), all(one.open), all(one.high),
                        all(one.low), all(one.close), all(one.volume), all(one.open_interest));
  } else if (kind < 6) {
    const int at = kind < 4 && !bars.empty() ? bars.back().date + 1 : date;
    const Bar bar = DailyBar(at, static_cast<float>(n));
    std::erase_if(bars, [at](const Bar& other) { return other.date == at; });
    bars.insert(std::ranges::upper_bound(bars, at, {}, &Bar::date), bar);
    if (writer != nullptr) {
      writer->AppendBar(at, 0, bar.open, bar.high, bar.low, bar.close, bar.volume,
                        bar.open_interest);
    }
  } else if (kind < 9) {
    const int at = kind < 8 && !bars.empty() ? bars.back().date : date;
    std::erase_if(bars, [at](const Bar& bar) { return bar.date == at; });
    if (writer != nullptr) writer->DeleteDailyBar(at);
  } else {
    std::erase_if(bars, [date](const Bar& bar) { return bar.date >= date + 200; });
    if (writer != nullptr) writer->DeleteDateRange(date + 200, 20991231);
  }
}

TEST(WriterCrash, AKilledProcessLeavesTheSeriesAsBeforeOrAfterTheCall) {
  const Scratch directory;
  directory.Write("MASTER", Master({{}}));
  directory.Write("EMASTER", Emaster({{}}));
  std::mt19937 random(3);
  SharedCounter calls;
  std::vector<Bar> bars;
  for (int round = 0; round < 20; ++round) {
    const int start = *calls;
    Child child([&] {
      IndexCache cache;
      for (std::vector<Bar> ignored = bars; true;) {
        MetaLibWriter writer(cache);
        writer.OpenDirectory(directory.Text());
        writer.SelectSeries("AAA", 1, -1);
        for (int i = 0; i < 4; ++i) {
          Call(*calls, &writer, ignored);
          ++*calls;
        }
      }
    });
    while (*calls < start + 5) usleep(100);
    usleep(static_cast<unsigned>(random() % 3000));
    child.Kill();
    for (int n = start; n < *calls; ++n) Call(n, nullptr, bars);
    std::vector<Bar> after = bars;
    Call(*calls, nullptr, after);
    const std::vector<Bar> found = ReadBars(directory);
    ASSERT_TRUE(found == bars || found == after) << "call " << *calls;
    if (found == after) ++*calls;
    bars = found;
  }
}

TEST(WriterCrash, TheLockKeepsOthersOutAndDiesWithItsHolder) {
  const Scratch directory;
  directory.Write("MASTER", Master({{}}));
  SharedCounter holding;
  Child child([&] {
    IndexCache cache;
    MetaLibWriter writer(cache);
    writer.OpenDirectory(directory.Text());
    *holding = 1;
    pause();
  });
  while (*holding == 0) usleep(100);
  IndexCache cache;
  MetaLibWriter writer(cache);
  EXPECT_TRUE(writer.IsDirectoryInUse(directory.Text()));
  std::string text;
  EXPECT_EQ(ErrorOf([&] { writer.OpenDirectory(directory.Text()); }, &text),
            MetaLibError::kDirectoryInUse);
  EXPECT_THAT(text, testing::HasSubstr(directory.Text()));
  EXPECT_EQ(ErrorOf([&] {
              StoreSecurity(directory.Text(), {"BBB", "", -1}, {}, cache);
            }),
            MetaLibError::kDirectoryInUse);
  EXPECT_EQ(ReadBars(directory).size(), 0U);  // readers never ask
  child.Kill();
  EXPECT_FALSE(writer.IsDirectoryInUse(directory.Text()));
  writer.OpenDirectory(directory.Text());
  EXPECT_FALSE(writer.IsDirectoryInUse(directory.Text()));  // by somebody else
  MetaLibWriter other(cache);
  EXPECT_TRUE(other.IsDirectoryInUse(directory.Text()));
  EXPECT_EQ(ErrorOf([&] { other.OpenDirectory(directory.Text()); }), MetaLibError::kDirectoryInUse);
  writer.CloseDirectory();
  EXPECT_FALSE(other.IsDirectoryInUse(directory.Text()));
  EXPECT_FALSE(other.IsDirectoryInUse(directory.Text() + "/nowhere"));
}

// A limit on the size of files stands for a full disk: writes fail half way.
TEST(WriterCrash, AWriteThatFailsLeavesTheSeriesAsItWas) {
  const Scratch directory;
  directory.Write("MASTER", Master({{}}));
  directory.Write("F1.DAT", DailyBytes({DailyBar(20050103), DailyBar(20050105)}));
  const std::vector<Bar> before = ReadBars(directory);
  const std::vector<std::string> names = directory.Names();
  Child child([&] {
    signal(SIGXFSZ, SIG_IGN);
    const rlimit limit = {.rlim_cur = 3 * 28 + 10, .rlim_max = 3 * 28 + 10};
    setrlimit(RLIMIT_FSIZE, &limit);
    IndexCache cache;
    MetaLibWriter writer(cache);
    writer.OpenDirectory(directory.Text());
    writer.SelectSeries("AAA", 1, -1);
    std::string text;
    const auto append = [&](int date) {
      return ErrorOf([&] { writer.AppendBar(date, 0, 1, 2, 3, 4, 5, 6); }, &text);
    };
    const std::vector<int> dates = {20060101, 20060102, 20060103, 20060104};
    const std::vector<float> values(4, 1.0F);
    bool well = append(20050110) == MetaLibError::kWriteFailed;
    well = well && append(20050104) == MetaLibError::kWriteFailed;
    well =
        well &&
        ErrorOf([&] {
          writer.WriteSeries(dates, {0, 0, 0, 0}, values, values, values, values, values, values);
        }) == MetaLibError::kWriteFailed;
    well = well && text.starts_with("F1.DAT");
    well = well && ErrorOf([&] {
                     IndexCache fresh;
                     MetaLibWriter(fresh).IsDirectoryInUse(directory.Text());
                     writer.CloseDirectory();
                     StoreSecurity(directory.Text(), {"BBB", "", -1}, {DailyBar(20050103)}, fresh);
                   }) == MetaLibError::kWriteFailed;
    _exit(well ? 0 : 1);
  });
  EXPECT_TRUE(child.EndsWell());
  EXPECT_EQ(ReadBars(directory), before);
  EXPECT_EQ(directory.Names(), names);
}

}  // namespace

}  // namespace velumar
