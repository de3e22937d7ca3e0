#include "platform/x_server.h"

#include <signal.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <stdexcept>

#include "platform/eventually.h"
#include "platform/x11/connection.h"

namespace velumar {

namespace {

// A window manager that has just started misses windows that are shown at that moment.
bool ManagesWindows(X11Connection& connection) {
  const xcb_window_t window = xcb_generate_id(connection.Xcb());
  xcb_create_window(connection.Xcb(), XCB_COPY_FROM_PARENT, window, connection.Root(), 0, 0, 10, 10,
                    0, XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
  xcb_map_window(connection.Xcb(), window);
  xcb_flush(connection.Xcb());
  std::this_thread::sleep_for(std::chrono::milliseconds(300));
  const bool managed = connection.IsMapped(window);
  xcb_destroy_window(connection.Xcb(), window);
  xcb_flush(connection.Xcb());
  return managed;
}

}  // namespace

// A program that ends with the object, or with the test program if that crashes.
struct XServer::Program {
  explicit Program(const std::string& command)
      : output(::popen(
            ("echo $$; exec setpriv --pdeathsig TERM " + command + " 2> /dev/null").c_str(), "re")),
        id(std::stoi(Line())) {}
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;
  ~Program() {
    ::kill(id, SIGTERM);
    ::pclose(output);
  }
  std::string Line() const {
    std::array<char, 64> text{};
    if (std::fgets(text.data(), text.size(), output) == nullptr) return "";
    const std::string line = text.data();
    return line.substr(0, line.find('\n'));
  }

  std::FILE* output;
  pid_t id;
};

bool XServer::Installed() {
  return std::system("type Xvfb openbox setxkbmap setpriv > /dev/null 2>&1") == 0;
}

XServer::XServer(bool with_window_manager)
    : server_(std::make_unique<Program>(
          "Xvfb -displayfd 1 -screen 0 800x600x24 -nolisten tcp -noreset")),
      display_(":" + server_->Line()) {
  if (!with_window_manager) return;
  window_manager_ = std::make_unique<Program>("env DISPLAY=" + display_ + " openbox --sm-disable");
  X11Connection connection(display_);
  if (!Eventually([&] { return connection.HasWindowManager() && ManagesWindows(connection); })) {
    throw std::runtime_error("openbox didn't start");
  }
}

XServer::~XServer() = default;

void XServer::SetLayout(const std::string& layout) const {
  const std::string command = "setxkbmap -display " + display_ + " " + layout;
  if (std::system(command.c_str()) != 0) throw std::runtime_error("no layout " + layout);
}

}  // namespace velumar
