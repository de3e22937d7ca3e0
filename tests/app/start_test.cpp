#include <QFile>
#include <QImage>
#include <QTemporaryDir>
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <stdexcept>

#include "app/services/event_loop.h"
#include "app/wiring/options.h"
#include "app/wiring/single_instance.h"
#include "app/wiring/unattended.h"
#include "ledger/ledger.h"
#include "marketdata/index_cache.h"
#include "platform/chart_program.h"
#include "platform/virtual_platform.h"
#include "shown_desktop.h"
#include "support/scratch.h"

namespace velumar {
namespace {

namespace fs = std::filesystem;
using ::testing::IsEmpty;

Options Read(const char* arguments) {
  return ReadOptions((QStringLiteral("velumar ") + QLatin1String(arguments))
                         .split(QLatin1Char(' '), Qt::SkipEmptyParts));
}

TEST(OptionsTest, AreReadOrNamedInTheError) {
  const Options options = Read(
      "--settings-dir /s --theme dark --play 20 --screenshot-dir out "
      "--chart-argument --state --chart-argument=-x");
  EXPECT_EQ(options.settings_dir, QStringLiteral("/s"));
  EXPECT_EQ(options.theme, ThemeChoice::kDark);
  EXPECT_EQ(options.play, 20);
  EXPECT_EQ(options.screenshot_dir, QStringLiteral("out"));
  EXPECT_EQ(options.chart_arguments, (std::vector<std::string>{"--state", "-x"}));
  EXPECT_FALSE(Read("").PlaysAlone());
  EXPECT_EQ(Read("").theme, ThemeChoice::kSystem);

  const std::pair<const char*, const char*> wrong[] = {{"--theme pink", "pink"},
                                                       {"--play 0 --screenshot-dir o", "--play 0"},
                                                       {"--play 5", "--screenshot-dir"},
                                                       {"data", "data"},
                                                       {"--settings-dir", "settings-dir"}};
  for (const auto& [arguments, named] : wrong) {
    try {
      Read(arguments);
      ADD_FAILURE() << arguments << " was accepted";
    } catch (const std::invalid_argument& error) {
      EXPECT_THAT(error.what(), testing::HasSubstr(named));
    }
  }
}

TEST(SingleInstance, OneHasTheFolderUntilItEnds) {
  const QTemporaryDir folder;
  const fs::path running = fs::path(folder.path().toStdString()) / "running";
  {
    SingleInstance first(folder.path());
    EXPECT_TRUE(first.First());
    EXPECT_FALSE(SingleInstance(folder.path()).First());
    EXPECT_TRUE(fs::exists(running)) << "the second start leaves the lock of the first";
    first.Release();
    EXPECT_TRUE(SingleInstance(folder.path()).First());
  }
  EXPECT_FALSE(fs::exists(running));

  SingleInstance deleted(folder.path());
  fs::remove(running);
  const SingleInstance other(folder.path());
  deleted.Release();
  EXPECT_TRUE(fs::exists(running)) << "the lock of the other one";
}

// A folder may be copied, belong to somebody else or be on a read-only disk.
TEST(SingleInstance, StartsInAnyFolderThatIsNotInUse) {
  const QTemporaryDir folder;
  const fs::path base = folder.path().toStdString();
  const auto starts = [](const fs::path& settings) {
    return SingleInstance(QString::fromStdString(settings.string())).First();
  };
  fs::create_directories(base / "copied");
  std::ofstream(base / "copied/running") << "4711\nvelumar\nanother-machine\n";
  fs::permissions(base / "copied/running", fs::perms::owner_read);
  EXPECT_TRUE(starts(base / "copied"));
  fs::create_directories(base / "folder/running");
  EXPECT_TRUE(starts(base / "folder"));
  EXPECT_TRUE(fs::exists(base / "folder/running"));
  EXPECT_TRUE(starts("/proc/velumar/settings")) << "a folder that can't be created";
  EXPECT_TRUE(starts("/proc/self")) << "a folder that can't be written";
}

// The window events of the toolkit at fifty times the speed.
class QuickEvents : public EventLoop {
 public:
  void ProcessPending() override { events_.ProcessPending(); }
  void WaitFor(std::chrono::milliseconds time) override {
    events_.WaitFor(std::min(time / 50, std::chrono::milliseconds(20)));
  }
  void Sleep(std::chrono::milliseconds) override {}

 private:
  QtEventLoop events_;
};

using UnattendedTest = ShownDesktop;

// The whole program with its widgets, from the setup window to the end of the process.
TEST_F(UnattendedTest, PlaysSavesPicturesAndEndsTheProgram) {
  const QTemporaryDir folder;
  IndexCache cache;
  VirtualPlatform world;
  world.settings.texts["LastPath"] = folder.filePath(QStringLiteral("data")).toStdString();
  EnsureChartProgramKeys(world.registry, "/opt/velumar/charthost");
  StoreSecurity(world.settings.texts["LastPath"], {"ABC", "Abc", -1}, DailyBars(200), cache);
  QuickEvents events;
  SimSession session;
  LedgerConnection ledger{[](std::string_view date) { return std::string(date); }};
  const Platform real = world.References();
  Platform platform{.events = events,
                    .chart_windows = real.chart_windows,
                    .keys = real.keys,
                    .boxes = real.boxes,
                    .folders = real.folders,
                    .files = real.files,
                    .colours = real.colours,
                    .clipboard = real.clipboard,
                    .printers = real.printers,
                    .settings = real.settings,
                    .registry = real.registry,
                    .screen = real.screen,
                    .locale = real.locale,
                    .clock = real.clock,
                    .programs = real.programs,
                    .web = real.web,
                    .program_folder = real.program_folder,
                    .default_data_dir = real.default_data_dir,
                    .store_dir = folder.filePath(QStringLiteral("store")).toStdString(),
                    .ledger_file = ":memory:"};
  Program program(session, desktop, platform, cache, ledger);
  std::vector<std::string> failures;
  AutoPlay play({folder.filePath(QStringLiteral("out")), 3}, desktop, view, session, program,
                [&failures](const std::string& why) { failures.push_back(why); });
  program.Start();
  desktop.form1().DTPicker1.SetValue(MadeDate(100));
  play.Begin();
  EXPECT_TRUE(QTest::qWaitFor([&world] { return world.programs.ended; }, 20'000));

  EXPECT_THAT(failures, IsEmpty());
  EXPECT_THAT(world.boxes.shown, IsEmpty());
  EXPECT_THAT(reports, IsEmpty());
  for (const char* name :
       {"Form1", "Form2", "Form3", "frmBigDateTime", "frmBigScore", "frmBigPrice"}) {
    const QImage picture(folder.filePath(QStringLiteral("out/%1.png").arg(QLatin1String(name))));
    EXPECT_GT(picture.width(), 200) << name;
  }
}

}  // namespace
}  // namespace velumar
