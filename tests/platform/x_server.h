#pragma once

#include <memory>
#include <string>

namespace velumar {

// A virtual X display, with or without a window manager.
class XServer {
 public:
  static constexpr int kWidth = 800;
  // Returns true if the programs that it needs are installed.
  static bool Installed();

  explicit XServer(bool with_window_manager);
  ~XServer();

  // ":7"
  const std::string& Display() const { return display_; }
  // A layout of setxkbmap: "us", "us,ru".
  void SetLayout(const std::string& layout) const;

 private:
  struct Program;

  std::unique_ptr<Program> server_;
  std::unique_ptr<Program> window_manager_;
  std::string display_;
};

}  // namespace velumar
