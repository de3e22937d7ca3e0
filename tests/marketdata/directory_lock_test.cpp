#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <functional>
#include <new>

#include "marketdata/directory_editor.h"
#include "marketdata/directory_lock.h"
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

 private:
  pid_t process_;
};

TEST(DirectoryLock, TheLockKeepsOthersOutAndDiesWithItsHolder) {
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

TEST(DirectoryLock, AFileThatIsNoLockFileIsNamedAndNotWaitedFor) {
  for (const bool pipe : {true, false}) {
    const Scratch directory;
    directory.Write("MASTER", Master({{}}));
    const auto lock = directory / DirectoryLock::kFileName;
    if (pipe) {
      ASSERT_EQ(mkfifo(lock.c_str(), 0600), 0);
    } else {
      std::filesystem::create_symlink(directory / "elsewhere", lock);
    }
    IndexCache cache;
    MetaLibWriter writer(cache);
    std::string text;
    EXPECT_EQ(ErrorOf([&] { writer.OpenDirectory(directory.Text()); }, &text),
              MetaLibError::kWriteFailed);
    EXPECT_THAT(text, testing::HasSubstr(pipe ? "not a regular file" : "link"));
    if (pipe) {
      EXPECT_EQ(ErrorOf([&] { writer.IsDirectoryInUse(directory.Text()); }),
                MetaLibError::kReadFailed);
    }
    EXPECT_FALSE(std::filesystem::exists(directory / "elsewhere"));
  }
}

}  // namespace

}  // namespace velumar
