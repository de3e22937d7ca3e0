#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <functional>
#include <new>

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

Bar Numbered(int n) { return DailyBar((2000 + n / 28) * 10000 + 101 + n % 28, 50); }

// The bars after `calls` calls of the child below, which feeds two bars and takes one back, and
// begins anew with each thousandth call.
std::vector<Bar> BarsAfter(int calls) {
  std::vector<Bar> bars;
  for (int call = calls / 1000 * 1000; call < calls; ++call) {
    if (call % 3 == 2) {
      bars.pop_back();
    } else {
      bars.push_back(Numbered(call % 1000));
    }
  }
  return bars;
}

void MakeCall(int call, MetaLibWriter& writer) {
  if (call % 1000 == 0) writer.DeleteDateRange(0, 99999999);
  const Bar bar = Numbered((call % 3 == 2 ? call - 1 : call) % 1000);
  if (call % 3 == 2) {
    writer.DeleteDailyBar(bar.date);
  } else {
    writer.AppendBar(bar.date, 0, bar.open, bar.high, bar.low, bar.close, bar.volume,
                     bar.open_interest);
  }
}

TEST(WriterCrash, AKilledReplayLeavesTheSeriesAsBeforeOrAfterTheCall) {
  const Scratch directory;
  directory.Write("MASTER", Master({{}}));
  directory.Write("EMASTER", Emaster({{}}));
  SharedCounter calls;
  for (int round = 0; round < 20; ++round) {
    const int start = *calls;
    Child child([&] {
      IndexCache cache;
      while (true) {
        MetaLibWriter writer(cache);
        writer.OpenDirectory(directory.Text());
        writer.SelectSeries("AAA", 1, -1);
        MakeCall(*calls, writer);
        ++*calls;
        writer.CloseDirectory();
      }
    });
    while (*calls < start + 5) usleep(100);
    usleep(static_cast<unsigned>(round * 379 % 1000));
    child.Kill();
    const std::vector<Bar> found = ReadBars(directory);
    const bool is_after = found == BarsAfter(*calls + 1);
    ASSERT_TRUE(is_after || found == BarsAfter(*calls)) << "call " << *calls;
    if (is_after) ++*calls;
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
