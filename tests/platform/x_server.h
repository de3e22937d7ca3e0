#pragma once

#include <sys/types.h>

#include <memory>
#include <string>
#include <vector>

namespace velumar {

// A program that ends with the object.
class ChildProcess {
 public:
  // `kept_fd` stays open in the child; -1 for none.
  ChildProcess(const std::vector<std::string>& command, int kept_fd);
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;
  ~ChildProcess();

 private:
  pid_t process_;
};

// A virtual X display, with or without a window manager.
class XServer {
 public:
  static constexpr int kWidth = 800;
  // Returns true if the programs that it needs are installed.
  static bool Installed();

  explicit XServer(bool with_window_manager);

  // ":7"
  const std::string& Display() const { return display_; }
  // A layout of setxkbmap: "us", "us,ru".
  void SetLayout(const std::string& layout) const;

 private:
  std::unique_ptr<ChildProcess> server_;
  std::unique_ptr<ChildProcess> window_manager_;
  std::string display_;
};

// Repeats the test until it holds, for at most fifteen seconds.
template <typename Test>
bool Eventually(const Test& test);

void ShortSleep();

template <typename Test>
bool Eventually(const Test& test) {
  constexpr int kLooks = 1500;
  for (int look = 0; look < kLooks; ++look) {
    if (test()) return true;
    ShortSleep();
  }
  return false;
}

}  // namespace velumar
