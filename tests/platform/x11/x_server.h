#pragma once

#include <signal.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <stdexcept>
#include <string>

namespace velumar {

// A program that ends with the object, or with the test program if that crashes.
class PipedProgram {
 public:
  explicit PipedProgram(const std::string& command)
      : output_(::popen(
            ("echo $$; exec setpriv --pdeathsig TERM " + command + " 2> /dev/null").c_str(), "re")),
        id_(std::stoi(Line())) {}
  PipedProgram(const PipedProgram&) = delete;
  PipedProgram& operator=(const PipedProgram&) = delete;
  ~PipedProgram() {
    ::kill(id_, SIGTERM);
    ::pclose(output_);
  }
  // The next line of its output.
  std::string Line() const {
    std::array<char, 256> text{};
    if (std::fgets(text.data(), text.size(), output_) == nullptr) return "";
    const std::string line = text.data();
    return line.substr(0, line.find('\n'));
  }

 private:
  std::FILE* output_;
  pid_t id_;
};

// A virtual X display, with or without a window manager.
class XServer {
 public:
  static constexpr unsigned kWidth = 800;
  // Returns true if the programs that it needs are installed.
  static bool Installed() {
    return std::system("type Xvfb openbox setxkbmap setpriv > /dev/null 2>&1") == 0;
  }

  explicit XServer(bool with_window_manager) {
    if (!with_window_manager) return;
    window_manager_.emplace("env DISPLAY=" + display_ +
                            " openbox --sm-disable --startup 'echo ready'");
    // It writes messages too.
    for (std::string line; line != "ready";) {
      line = window_manager_->Line();
      if (line.empty()) throw std::runtime_error("openbox didn't start");
    }
  }

  // ":7"
  const std::string& Display() const { return display_; }
  // A layout of setxkbmap: "us", "us,ru".
  void SetLayout(const std::string& layout) const {
    const std::string command = "setxkbmap -display " + display_ + " " + layout;
    if (std::system(command.c_str()) != 0) throw std::runtime_error("no layout " + layout);
  }

 private:
  PipedProgram server_{"Xvfb -displayfd 1 -screen 0 800x600x24 -nolisten tcp -noreset"};
  std::string display_ = ":" + server_.Line();
  std::optional<PipedProgram> window_manager_;
};

}  // namespace velumar
