#include "platform/x_server.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <cstdlib>
#include <stdexcept>
#include <thread>

#include "platform/x11/connection.h"

namespace velumar {

namespace {

bool InPath(const std::string& program) {
  return std::system(("command -v " + program + " > /dev/null").c_str()) == 0;
}

// Xvfb writes the display number to this pipe once it accepts connections.
std::string ReadLine(int fd) {
  std::string line;
  char c = 0;
  while (::read(fd, &c, 1) == 1 && c != '\n') line += c;
  return line;
}

// A window manager that has just started misses windows that are shown at that moment.
bool ManagesWindows(X11Connection& connection) {
  const xcb_window_t window = xcb_generate_id(connection.Xcb());
  xcb_create_window(connection.Xcb(), XCB_COPY_FROM_PARENT, window, connection.Root(), 0, 0, 10, 10,
                    0, XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
  xcb_map_window(connection.Xcb(), window);
  xcb_flush(connection.Xcb());
  constexpr int kLooks = 30;
  bool managed = false;
  for (int look = 0; look < kLooks && !managed; ++look) {
    ShortSleep();
    managed = connection.IsMapped(window);
  }
  xcb_destroy_window(connection.Xcb(), window);
  xcb_flush(connection.Xcb());
  return managed;
}

}  // namespace

ChildProcess::ChildProcess(const std::vector<std::string>& command, int kept_fd)
    : process_(::fork()) {
  if (process_ != 0) return;
  // A crashed test leaves no processes.
  ::prctl(PR_SET_PDEATHSIG, SIGTERM);
  if (kept_fd >= 0) ::fcntl(kept_fd, F_SETFD, 0);
  const int nothing = ::open("/dev/null", O_WRONLY);
  ::dup2(nothing, STDOUT_FILENO);
  ::dup2(nothing, STDERR_FILENO);
  std::vector<char*> arguments;
  arguments.reserve(command.size() + 1);
  for (const std::string& word : command) arguments.push_back(const_cast<char*>(word.c_str()));
  arguments.push_back(nullptr);
  ::execvp(arguments[0], arguments.data());
  ::_exit(127);
}

ChildProcess::~ChildProcess() {
  ::kill(process_, SIGTERM);
  ::waitpid(process_, nullptr, 0);
}

bool XServer::Installed() { return InPath("Xvfb") && InPath("openbox") && InPath("setxkbmap"); }

XServer::XServer(bool with_window_manager) {
  std::array<int, 2> ends{};
  if (::pipe2(ends.data(), O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
  server_ = std::make_unique<ChildProcess>(
      std::vector<std::string>{"Xvfb", "-displayfd", std::to_string(ends[1]), "-screen", "0",
                               "800x600x24", "-nolisten", "tcp", "-noreset"},
      ends[1]);
  ::close(ends[1]);
  display_ = ":" + ReadLine(ends[0]);
  ::close(ends[0]);
  if (!with_window_manager) return;
  window_manager_ = std::make_unique<ChildProcess>(
      std::vector<std::string>{"env", "DISPLAY=" + display_, "openbox", "--sm-disable"}, -1);
  X11Connection connection(display_);
  if (!Eventually([&] { return connection.HasWindowManager() && ManagesWindows(connection); })) {
    throw std::runtime_error("openbox didn't start");
  }
}

void XServer::SetLayout(const std::string& layout) const {
  const std::string command = "setxkbmap -display " + display_ + " " + layout;
  if (std::system(command.c_str()) != 0) throw std::runtime_error("no layout " + layout);
}

void ShortSleep() { std::this_thread::sleep_for(std::chrono::milliseconds(10)); }

}  // namespace velumar
