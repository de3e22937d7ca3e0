#include <fcntl.h>
#include <signal.h>
#include <unistd.h>
#include <xcb/xcb.h>

#include <QSocketNotifier>
#include <array>
#include <cerrno>
#include <iostream>
#include <system_error>
#include <utility>

#include "app/wiring/process.h"

namespace velumar {

namespace {

bool IsReachable(const QByteArray& display) {
  const std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> connection(
      xcb_connect(display.constData(), nullptr), &xcb_disconnect);
  return xcb_connection_has_error(connection.get()) == 0;
}

constexpr std::array kSignals{SIGINT, SIGTERM, SIGHUP};

// A signal handler may do little more than write a byte to a pipe, which the event loop reads.
volatile int signal_pipe = -1;

void WriteToPipe(int) {
  const int kept_error = errno;
  const char byte = 1;
  [[maybe_unused]] const ssize_t written = ::write(signal_pipe, &byte, 1);
  errno = kept_error;
}

void SetHandler(void (*handler)(int)) {
  struct sigaction action {};
  action.sa_handler = handler;
  action.sa_flags = SA_RESTART;
  for (const int signal : kSignals) ::sigaction(signal, &action, nullptr);
}

}  // namespace

std::optional<std::string> ChooseDisplay() {
  if (!qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) return std::nullopt;
  const QByteArray display = qgetenv("DISPLAY");
  if (display.isEmpty() && !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY")) {
    return "Velumar needs X11, and this Wayland session has no X server. Install XWayland, or log "
           "in "
           "to an X11 session.";
  }
  if (display.isEmpty()) return "There is no display: DISPLAY is not set.";
  if (!IsReachable(display)) {
    return "Could not connect to the display " + display.toStdString() + " (from DISPLAY).";
  }
  qputenv("QT_QPA_PLATFORM", "xcb");
  return std::nullopt;
}

void ReportStartFailure(const std::string& why) { std::cerr << "velumar: " << why << std::endl; }

struct Termination::Watch {
  explicit Watch(std::function<void()> request) : on_request(std::move(request)) {
    if (::pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK) != 0) {
      throw std::system_error(errno, std::generic_category(),
                              "could not create a pipe for signals");
    }
    notifier = std::make_unique<QSocketNotifier>(ends[0], QSocketNotifier::Read);
    QObject::connect(notifier.get(), &QSocketNotifier::activated, notifier.get(), [this] {
      char byte = 0;
      while (::read(ends[0], &byte, 1) > 0) {
      }
      on_request();
    });
    signal_pipe = ends[1];
    SetHandler(WriteToPipe);
  }

  ~Watch() {
    SetHandler(SIG_DFL);
    signal_pipe = -1;
    for (const int end : ends) ::close(end);
  }

  std::function<void()> on_request;
  std::array<int, 2> ends{};
  std::unique_ptr<QSocketNotifier> notifier;
};

Termination::Termination(std::function<void()> on_request)
    : watch_(std::make_unique<Watch>(std::move(on_request))) {}

Termination::~Termination() = default;

}  // namespace velumar
