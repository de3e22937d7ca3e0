#pragma once

#include <atomic>
#include <cstdint>
#include <string>
#include <thread>

namespace velumar {

// Takes one connection after another, reads what is asked and answers as it was told, however
// little that has to do with HTTP.
class HostileServer {
 public:
  struct Manner {
    std::string first;       // what it says at once
    std::string again = {};  // what it then says again and again
    int pause_ms = 0;        // between two times
    bool hangs_up = false;   // behind the first; else it holds the line
  };

  explicit HostileServer(Manner manner);
  ~HostileServer();
  HostileServer(const HostileServer&) = delete;
  HostileServer& operator=(const HostileServer&) = delete;

  std::string Address() const { return "http://127.0.0.1:" + std::to_string(port_); }
  std::size_t Sent() const { return sent_; }  // bytes
  int Connections() const { return connections_; }

 private:
  void Serve();
  void Talk(int line);
  bool Say(int line, const std::string& bytes);

  Manner manner_;
  int listening_ = -1;
  std::uint16_t port_ = 0;
  std::atomic<std::size_t> sent_ = 0;
  std::atomic<int> connections_ = 0;
  std::atomic<bool> ending_ = false;
  std::thread thread_;
};

}  // namespace velumar
