#include "charthost/view/link_server.h"

#include <QLabel>
#include <QTest>
#include <atomic>
#include <thread>
#include <vector>

#include "charthost/chart_windows.h"
#include "charthost/view/chart_pane.h"
#include "charthost/view/chart_plot.h"
#include "platform/chart_link.h"
#include "platform/ipc.h"

namespace velumar {
namespace {

using Command = ChartRequest::Command;
using std::chrono_literals::operator""ms;

struct LinkServerTest : testing::Test {
  LinkServerTest() {
    qputenv("XDG_RUNTIME_DIR", QByteArray::fromStdString(program_.scratch.Path().string()));
    server_.emplace(*program_.window);
  }
  ~LinkServerTest() override { qunsetenv("XDG_RUNTIME_DIR"); }

  // Sends the text as another program would, while this one runs its events.
  IpcAnswer Send(const std::string& text) {
    IpcAnswer answer = IpcAnswer::kNone;
    std::atomic<bool> answered = false;
    std::thread sender([&] {
      answer = SendIpcRequest(listener_, text, 2000ms);
      answered = true;
    });
    EXPECT_TRUE(QTest::qWaitFor([&] { return answered.load(); }, 5000));
    sender.join();
    return answer;
  }
  bool Done(const ChartRequest& request) {
    return Send(ChartRequestText(request)) == IpcAnswer::kAccepted;
  }
  ChartRequest Open(int interval) {
    return {Command::kOpen, program_.folder + "/", "SCB", interval};
  }
  QImage Picture() { return program_.window->ActiveChart()->Plot().grab().toImage(); }

  const std::string listener_ =
      ChartLinkListener(static_cast<std::uint32_t>(QCoreApplication::applicationPid()));
  ChartProgram program_;
  std::optional<LinkServer> server_;
};

TEST_F(LinkServerTest, OpensRefreshesAndClosesChartsOfTheStore) {
  EXPECT_TRUE(Done({.command = Command::kHello}));
  EXPECT_TRUE(Done(Open(-1)));
  EXPECT_TRUE(Done(Open(5)));
  EXPECT_EQ(program_.Last()["charts"], 2);
  EXPECT_EQ(program_.Last()["chart"]["interval"], 5);
  EXPECT_TRUE(Done(Open(-1)));
  EXPECT_EQ(program_.Last()["charts"], 2) << "a chart that is open is not opened twice";
  EXPECT_FALSE(Done(Open(15))) << "no such series";

  StoreSecurity(program_.folder, {"SCB", "Bank", -1}, DailyBars(301), program_.cache);
  StoreSecurity(program_.folder, {"SCB", "Bank", 5}, IntradayBars(61, 5), program_.cache);
  EXPECT_FALSE(Done({.command = Command::kRefresh, .folder = "/elsewhere"})) << "no such chart";
  EXPECT_EQ(program_.window->ActiveChart()->Document().Model().Series().size(), 300);
  EXPECT_TRUE(Done({.command = Command::kRefresh, .folder = program_.folder}));
  EXPECT_EQ(program_.Last()["chart"]["bars"], 301) << "the chart in front";
  program_.window->Act(HostAction::kNextChart);
  EXPECT_EQ(program_.Last()["chart"]["bars"], 61) << "and the other one";

  StoreSecurity(program_.folder, {"SCB", "Bank", -1}, DailyBars(302), program_.cache);
  EXPECT_TRUE(Done(Open(-1)));
  EXPECT_EQ(program_.window->ActiveChart()->Document().Model().Series().size(), 302)
      << "a chart of the last run shows the bars of the next";

  EXPECT_TRUE(Done({.command = Command::kCloseAll, .symbol = "SCB"}));
  EXPECT_EQ(program_.Last()["charts"], 0);
  const auto hint = [this] { return program_.window->findChild<QLabel*>()->text(); };
  EXPECT_TRUE(hint().contains(QStringLiteral("Opening SCB")));
  EXPECT_FALSE(Done(Open(15)));
  EXPECT_TRUE(hint().contains(QStringLiteral("No chart is open")));
}

TEST_F(LinkServerTest, OffersNoOtherSeriesInABlindRun) {
  const auto offered = [this] {
    const QList<QAction*> actions = program_.window->findChildren<QAction*>();
    const auto compare =
        std::ranges::find(actions, QKeySequence(Qt::CTRL | Qt::Key_K), &QAction::shortcut);
    return compare != actions.end() && (*compare)->isEnabled();
  };
  ChartRequest open = Open(-1);
  EXPECT_TRUE(Done(open) && offered());
  open.alone = true;
  EXPECT_TRUE(Done(open) && !offered());
  EXPECT_TRUE(Done({.command = Command::kRefresh, .folder = program_.folder}) && !offered());
  EXPECT_TRUE(Done(Open(5)) && offered()) << "the next run";
}

TEST_F(LinkServerTest, ShowsOrdersAndWhatIsHeldUntilTheyAreGone) {
  ASSERT_TRUE(Done(Open(-1)));
  QTest::qWait(50);
  const QImage bare = Picture();
  const float close = DailyBars(300)[280].close;
  ChartRequest request{.command = Command::kPositions,
                       .folder = program_.folder,
                       .symbol = "SCB",
                       .positions = {{{280, close, true, true}}, {}}};
  const auto shown = [&] {
    EXPECT_TRUE(Done(request));
    QTest::qWait(50);
    return Picture();
  };
  const QImage entry = shown();
  EXPECT_NE(entry, bare);
  request.positions.orders[0].entry = false;
  EXPECT_NE(shown(), entry) << "an exit looks different";
  request.positions.orders[0].entry = true;
  request.positions.held = {{true, close, 2, 12.5}};
  EXPECT_NE(shown(), entry);
  request.positions.held.push_back({false, close, 1, -1});
  shown();
  std::vector<double> edges;  // of the tags, in pixels
  for (int i = 0; i < program_.window->ActiveChart()->Plot().itemCount(); ++i) {
    const auto* const tag =
        qobject_cast<QCPItemText*>(program_.window->ActiveChart()->Plot().item(i));
    if (tag == nullptr || !tag->text().contains(u'@')) continue;
    edges.push_back(tag->top->pixelPosition().y());
    edges.push_back(tag->bottom->pixelPosition().y());
  }
  ASSERT_EQ(edges.size(), 4U);
  const QImage held = Picture();
  request.positions.plans = {{280, close, true, false, false}};
  const QImage planned = shown();
  EXPECT_NE(planned, held);
  request.positions.plans[0].reached = true;
  EXPECT_NE(shown(), planned) << "reached";
  request.positions.plans.assign(1000, {280, 1e300, true, false, false});
  EXPECT_EQ(shown(), held) << "too far away to be seen";
  EXPECT_TRUE(edges[1] <= edges[2] || edges[3] <= edges[0]) << "one tag covers the other";
  program_.window->Act(HostAction::kCloseAll);
  ASSERT_EQ(program_.window->ActiveChart(), nullptr);
  program_.window->OpenDirectly({program_.folder, "SCB", -1});
  EXPECT_EQ(program_.window->ActiveChart()->Plot().Positions(), request.positions)
      << "a chart that is opened between two bars";
  request.command = Command::kRefresh;
  request.positions.held.pop_back();
  ASSERT_TRUE(Done(request));
  program_.window->Act(HostAction::kCloseAll);
  program_.window->OpenDirectly({program_.folder, "SCB", -1});
  EXPECT_EQ(program_.window->ActiveChart()->Plot().Positions(), request.positions)
      << "and after a bar";
  request.command = Command::kPositions;
  request.positions = {{{300, close, true, true}}, {}};
  EXPECT_EQ(shown(), bare) << "an order at a bar that isn't there";
}

TEST_F(LinkServerTest, SavesPicturesForTheJournalAndNothingElse) {
  program_.window->resize(3800, 1900);
  ASSERT_TRUE(Done(Open(-1)));
  const std::filesystem::path journal = program_.scratch / "Journal";
  const auto takes = [&](const std::string& file) {
    return Done({Command::kPicture, program_.folder, "SCB", {}, false, {}, file});
  };
  const std::string first = (journal / "Portfolio-12-1.png").string();
  const auto saved = [&] {
    EXPECT_TRUE(QTest::qWaitFor([&] { return std::filesystem::exists(first); }, 5000));
    return QImage(QString::fromStdString(first));
  };
  EXPECT_TRUE(takes(first));
  const QImage before = saved();
  EXPECT_EQ(before.width(), 1920);
  EXPECT_LE(std::filesystem::file_size(first), 200'000U);
  std::filesystem::remove(first);
  EXPECT_TRUE(takes(first));
  StoreSecurity(program_.folder, {"SCB", "Bank", -1}, DailyBars(301), program_.cache);
  EXPECT_TRUE(Done({.command = Command::kRefresh, .folder = program_.folder}));
  EXPECT_EQ(saved(), before) << "taken before the next bar";

  const std::string foreign = (journal / "holiday-1-1.png").string();
  QImage(10, 10, QImage::Format_Mono).save(QString::fromStdString(foreign));
  EXPECT_TRUE(takes(foreign));
  for (const std::filesystem::path& refused :
       {program_.scratch / "Portfolio-1-1.png", journal / "Portfolio-1.png",
        journal / "Portfolio-1-2.exe", program_.scratch / "none" / "Journal" / "Portfolio-1-1.png",
        std::filesystem::path("Journal/Portfolio-1-1.png")}) {
    EXPECT_FALSE(takes(refused.string())) << refused;
  }
  EXPECT_FALSE(Done({Command::kPicture, program_.folder, "XYZ", {}, false, {}, first}))
      << "no chart";
  server_.reset();  // what was taken is written
  EXPECT_EQ(QImage(QString::fromStdString(foreign)).width(), 10) << "not ours";
  EXPECT_EQ(std::ranges::distance(std::filesystem::directory_iterator(journal)), 2);
}

TEST_F(LinkServerTest, SaysThatTheTraderHasClosedItUnlessItWasAskedToQuit) {
  std::ptrdiff_t closed = 0;
  const auto velumar = ListenForMessages(kRunKeyListener, [&](const IpcMessage& message) {
    closed += message.first == kMessageChartClosed ? 1 : 0;
  });
  program_.window->close();
  EXPECT_TRUE(QTest::qWaitFor([&] { return closed == 1; }, 3000));
  program_.window->show();
  EXPECT_TRUE(Done({.command = Command::kQuit}));
  EXPECT_TRUE(QTest::qWaitFor([&] { return !program_.window->isVisible(); }, 3000));
  QTest::qWait(100);
  EXPECT_EQ(closed, 1);
}

TEST_F(LinkServerTest, PassesTheLettersOfTheRunOn) {
  std::string passed;
  const auto velumar = ListenForMessages(kRunKeyListener, [&](const IpcMessage& message) {
    if (message.second == 0) passed += static_cast<char>(message.first);
  });
  for (const char key : std::string_view("lhsbgnom")) {
    QTest::keyClick(program_.window->windowHandle(), key);
  }
  EXPECT_TRUE(QTest::qWaitFor([&] { return passed == "LSBGNOM"; }, 3000)) << passed;
}

TEST_F(LinkServerTest, IgnoresWhatIsNoRequest) {
  EXPECT_EQ(Send("hello"), IpcAnswer::kRefused);
  EXPECT_EQ(Send(std::string(kLongestIpcRequest + 1, ' ')), IpcAnswer::kRefused);
  EXPECT_TRUE(Done({.command = Command::kHello})) << "it still listens";
  server_.reset();
  EXPECT_EQ(Send(ChartRequestText({})), IpcAnswer::kNobodyListens);
}

}  // namespace
}  // namespace velumar
