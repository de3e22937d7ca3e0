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

class SignalWatch : public QObject {
 public:
  explicit SignalWatch(std::function<void()> on_request) : on_request_(std::move(on_request)) {
    if (::pipe2(ends_.data(), O_CLOEXEC | O_NONBLOCK) != 0) {
      throw std::system_error(errno, std::generic_category(),
                              "could not create a pipe for signals");
    }
    auto* const notifier = new QSocketNotifier(ends_[0], QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, [this] {
      char byte = 0;
      while (::read(ends_[0], &byte, 1) > 0) {
      }
      on_request_();
    });
    signal_pipe = ends_[1];
    SetHandler(WriteToPipe);
  }
  ~SignalWatch() override {
    SetHandler(SIG_DFL);
    signal_pipe = -1;
    for (const int end : ends_) ::close(end);
  }
  SignalWatch(const SignalWatch&) = delete;
  SignalWatch& operator=(const SignalWatch&) = delete;

 private:
  std::function<void()> on_request_;
  std::array<int, 2> ends_{};
};

}  // namespace

std::optional<std::string> ChooseDisplay() {
  if (!qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) return std::nullopt;
  const QByteArray display = qgetenv("DISPLAY");
  if (display.isEmpty() && !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY")) {
    return "Velumar needs X11, and this Wayland session has no X server. Install XWayland, or "
           "log in to an X11 session.";
  }
  if (display.isEmpty()) return "There is no display: DISPLAY is not set.";
  if (!IsReachable(display)) {
    return "Could not connect to the display " + display.toStdString() + " (from DISPLAY).";
  }
  qputenv("QT_QPA_PLATFORM", "xcb");
  return std::nullopt;
}

void ReportStartFailure(const std::string& why) { std::cerr << "velumar: " << why << std::endl; }

std::unique_ptr<QObject> WatchForTermination(std::function<void()> on_request) {
  return std::make_unique<SignalWatch>(std::move(on_request));
}

}  // namespace velumar
