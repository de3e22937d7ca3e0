#include "app/wiring/unattended.h"

#include <gmock/gmock.h>

#include <QImage>
#include <QTemporaryDir>
#include <algorithm>

#include "app/services/event_loop.h"
#include "ledger/ledger.h"
#include "marketdata/index_cache.h"
#include "platform/chart_program_keys.h"
#include "platform/virtual_platform.h"
#include "shell/program.h"
#include "shown_desktop.h"
#include "support/scratch.h"

namespace velumar {
namespace {

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

class AutoPlayTest : public ShownDesktop {
 protected:
  AutoPlayTest() {
    world.settings.texts["LastPath"] = folder.filePath(QStringLiteral("data")).toStdString();
    EnsureChartProgramKeys(world.registry, "/opt/velumar/charthost");
    StoreSecurity(world.settings.texts["LastPath"], {"ABC", "Abc", -1}, DailyBars(200), cache);
  }

  QTemporaryDir folder;
  VirtualPlatform world;
  QuickEvents events;
  SimSession session;
  IndexCache cache;
  LedgerConnection ledger{[](std::string_view date) { return std::string(date); }};
};

// The real program behind real widgets, from the setup window to the end of the process.
TEST_F(AutoPlayTest, PlaysSavesPicturesAndClosesTheProgram) {
  Platform real = world.References();
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
  EXPECT_TRUE(QTest::qWaitFor([this] { return world.programs.ended; }, 20'000));

  EXPECT_THAT(failures, ::testing::IsEmpty());
  EXPECT_THAT(world.boxes.shown, ::testing::IsEmpty());
  EXPECT_THAT(reports, ::testing::IsEmpty());
  for (const char* name :
       {"Form1", "Form2", "Form3", "frmBigDateTime", "frmBigScore", "frmBigPrice"}) {
    const QImage picture(folder.filePath(QStringLiteral("out/%1.png").arg(QLatin1String(name))));
    EXPECT_GT(picture.width(), 200) << name;
  }
}

}  // namespace
}  // namespace velumar
