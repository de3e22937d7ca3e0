#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <QSocketNotifier>
#include <array>
#include <cerrno>
#include <system_error>
#include <utility>

#include "app/wiring/termination.h"

namespace velumar {

namespace {

constexpr std::array kSignals{SIGINT, SIGTERM, SIGHUP};

// The only way out of a signal's handler: a byte into a pipe, which the event loop reads.
volatile int signal_pipe = -1;

void Report(int) {
  const int kept_error = errno;
  const char byte = 1;
  [[maybe_unused]] const ssize_t written = ::write(signal_pipe, &byte, 1);
  errno = kept_error;
}

void Handle(void (*handler)(int)) {
  struct sigaction action {};
  action.sa_handler = handler;
  action.sa_flags = SA_RESTART;
  for (const int signal : kSignals) ::sigaction(signal, &action, nullptr);
}

}  // namespace

struct Termination::Watch {
  explicit Watch(std::function<void()> request) : on_request(std::move(request)) {
    if (::pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK) != 0) {
      throw std::system_error(errno, std::generic_category(), "no pipe for the end of the program");
    }
    notifier = std::make_unique<QSocketNotifier>(ends[0], QSocketNotifier::Read);
    QObject::connect(notifier.get(), &QSocketNotifier::activated, notifier.get(), [this] {
      char byte = 0;
      while (::read(ends[0], &byte, 1) > 0) {
      }
      on_request();
    });
    signal_pipe = ends[1];
    Handle(Report);
  }

  ~Watch() {
    Handle(SIG_DFL);
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
