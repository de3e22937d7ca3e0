#include "charthost/view/link_server.h"

#include <QCoreApplication>
#include <QTimer>
#include <exception>

#include "charthost/view/main_window.h"
#include "charthost/view/open_charts.h"
#include "charthost/view/open_dialog.h"
#include "charts/qt_text.h"
#include "platform/chart_link.h"

namespace velumar {

namespace {

std::uint32_t OwnProcess() {
  return static_cast<std::uint32_t>(QCoreApplication::applicationPid());
}

}  // namespace

LinkServer::LinkServer(MainWindow& window)
    : window_(window),
      listener_(ListenForRequests(ChartLinkListener(OwnProcess()),
                                  [this](std::string_view text) { return Accepts(text); })) {
  QObject::connect(&window, &MainWindow::Closing, &lifetime_, [this] {
    if (quitting_) return;
    SendIpcMessage(kRunKeyListener, {.first = kMessageChartClosed, .second = OwnProcess()});
  });
  const auto send = [](std::uint32_t message) {
    return [message](const QString& folder, int file_number) {
      if (!IsWorkingStore(FromQt(folder))) return;
      SendIpcMessage(kRunKeyListener,
                     {.first = message, .second = static_cast<std::uint32_t>(file_number)});
    };
  };
  QObject::connect(&window.Charts(), &OpenCharts::SeriesOpened, &lifetime_, send(kMessageCompare));
  QObject::connect(&window.Charts(), &OpenCharts::SeriesClosed, &lifetime_,
                   send(kMessageEndCompare));
}

bool LinkServer::Accepts(std::string_view text) {
  const std::optional<ChartRequest> request = ReadChartRequest(text);
  if (!request) return false;
  pictures_.TakeWaiting();
  const std::string folder = FromQt(CleanFolder(ToQt(request->folder)));
  switch (request->command) {
    case ChartRequest::Command::kNone:
      return false;
    case ChartRequest::Command::kHello:
      return true;
    case ChartRequest::Command::kCloseAll:
      window_.CloseAll();
      if (!request->symbol.empty()) window_.ShowOpening(ToQt(request->symbol));
      return true;
    case ChartRequest::Command::kRefresh:
      return window_.RefreshFolder(folder, request->symbol, request->positions);
    case ChartRequest::Command::kPositions:
      window_.Charts().ShowPositions(folder, request->symbol, request->positions);
      return true;
    case ChartRequest::Command::kPicture: {
      ChartPane* const chart = window_.Charts().ChartOf(folder, request->symbol);
      return chart != nullptr && pictures_.Take(*chart, request->picture);
    }
    case ChartRequest::Command::kTheme:
      window_.FollowTheme(request->dark);
      return true;
    case ChartRequest::Command::kQuit:
      quitting_ = true;
      QTimer::singleShot(0, &window_, &QWidget::close);  // after the answer
      return true;
    case ChartRequest::Command::kOpen:
      break;
  }
  try {
    window_.OpenDirectly({folder, request->symbol, request->interval});
    window_.OfferCompare(!request->alone);
    return true;
  } catch (const std::exception&) {
    window_.ShowHint();
    return false;  // Velumar says what to do
  }
}

}  // namespace velumar
