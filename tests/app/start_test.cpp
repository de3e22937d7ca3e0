#include <QImage>
#include <filesystem>
#include <functional>
#include <stdexcept>

#include "app/wiring/options.h"
#include "app/wiring/single_instance.h"
#include "app/wiring/unattended.h"
#include "platform/chart_program.h"
#include "shown_desktop.h"
#include "support/scratch.h"

namespace velumar {
namespace {

namespace fs = std::filesystem;
using std::chrono_literals::operator""ms;

Options Read(const char* arguments) {
  return ReadOptions((QStringLiteral("velumar ") + QLatin1String(arguments))
                         .split(QLatin1Char(' '), Qt::SkipEmptyParts));
}

TEST(OptionsTest, AreReadOrNamedInTheError) {
  const Options options = Read("--theme dark --play 20 --screenshot-dir out");
  EXPECT_EQ(options.theme, ThemeChoice::kDark);
  EXPECT_EQ(options.play, 20);
  EXPECT_EQ(options.screenshot_dir, QStringLiteral("out"));
  EXPECT_FALSE(Read("").PlaysAlone());

  const std::pair<const char*, const char*> wrong[] = {{"--theme pink", "pink"},
                                                       {"--play 0 --screenshot-dir o", "--play 0"},
                                                       {"--play 5", "--screenshot-dir"},
                                                       {"--settings-dir", "settings-dir"}};
  for (const auto& c : wrong) {
    EXPECT_THAT([&] { Read(c.first); }, ThrowsMessage<std::invalid_argument>(HasSubstr(c.second)));
  }
}

// A folder may be copied, belong to somebody else or be on a read-only disk.
TEST(SingleInstance, StartsInAnyFolderThatIsNotInUse) {
  const ScratchFolder base;
  const auto starts = [](const fs::path& settings) {
    return SingleInstance(QString::fromStdString(settings.string())).First();
  };
  fs::create_directories(base / "copied");
  base.Write("copied/running", "4711\nvelumar\nanother-machine\n");
  fs::permissions(base / "copied/running", fs::perms::owner_read);
  EXPECT_TRUE(starts(base / "copied"));
  fs::create_directories(base / "folder/running");
  EXPECT_TRUE(starts(base / "folder"));
  EXPECT_TRUE(fs::exists(base / "folder/running"));
  EXPECT_TRUE(starts("/proc/velumar/settings")) << "a folder that can't be created";
  EXPECT_TRUE(starts("/proc/self")) << "a folder that can't be written";
  const SingleInstance first(QString::fromStdString(base.Text()));
  EXPECT_FALSE(starts(base.Path()));
}

using UnattendedTest = ShownProgram;

// The whole program with its widgets, from the setup window to the end of the process.
TEST_F(UnattendedTest, PlaysSavesPicturesAndEndsTheProgram) {
  const ScratchFolder folder;
  world.settings.texts["LastPath"] = folder.Sub("data");
  EnsureChartProgramKeys(world.registry, "/opt/velumar/charthost");
  StoreSecurity(folder.Sub("data"), {"ABC", "Abc", -1}, DailyBars(200), cache);
  // The toolkit's events run at fifty times the speed.
  const std::function<void()> tick = [&] {
    world.events.Schedule(50ms, tick);
    QTest::qWait(1);
  };
  tick();
  std::vector<std::string> failures;
  AutoPlay play({QString::fromStdString(folder.Sub("out")), 3}, desktop, view, session, program,
                [&failures](const std::string& why) { failures.push_back(why); });
  program.Start();
  desktop.form1().DTPicker1.SetValue(MadeDate(100));
  play.Begin();
  EXPECT_TRUE(QTest::qWaitFor([this] { return world.programs.ended; }, 20'000));

  EXPECT_THAT(failures, IsEmpty());
  EXPECT_THAT(world.boxes.shown, IsEmpty());
  EXPECT_THAT(reports, IsEmpty());
  for (const std::string name :
       {"Form1", "Form2", "Form3", "frmBigDateTime", "frmBigScore", "frmBigPrice"}) {
    const QImage picture(QString::fromStdString(folder.Sub("out/" + name + ".png")));
    EXPECT_GT(picture.width(), 200) << name;
  }
}

}  // namespace
}  // namespace velumar
