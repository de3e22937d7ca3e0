#pragma once

#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <string>
#include <thread>

namespace velumar {

inline sockaddr_in LocalPort(std::uint16_t port) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(port);
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  return address;
}

// Returns false once the other end has closed the connection.
inline bool SendBytes(int connection, const std::string& bytes) {
  return send(connection, bytes.data(), bytes.size(), MSG_NOSIGNAL) == std::ssize(bytes);
}

// A client that sends any bytes to a port of this machine.
class RawClient {
 public:
  explicit RawClient(std::uint16_t port) {
    const sockaddr_in address = LocalPort(port);
    const timeval patience{5, 0};
    setsockopt(socket_, SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof(patience));
    connect(socket_, reinterpret_cast<const sockaddr*>(&address), sizeof(address));
  }
  ~RawClient() { close(socket_); }
  RawClient(const RawClient&) = delete;
  RawClient& operator=(const RawClient&) = delete;

  bool Send(const std::string& bytes) const { return SendBytes(socket_, bytes); }
  // Everything until the other end closes the connection, or sends nothing for five seconds.
  std::string ReceiveAll() const {
    std::string received;
    std::array<char, 4096> block{};
    for (ssize_t count = 0; (count = recv(socket_, block.data(), block.size(), 0)) > 0;) {
      received.append(block.data(), static_cast<std::size_t>(count));
    }
    return received;
  }

 private:
  int socket_ = socket(AF_INET, SOCK_STREAM, 0);
};

// A server that answers any request with the given bytes, whether or not they are HTTP.
class HostileServer {
 public:
  struct Answer {
    std::string first;
    std::string repeated = {};  // sent again and again after the first
    int pause_ms = 0;           // between two repeats
    bool hangs_up = false;      // after the first; otherwise the connection stays open
  };

  explicit HostileServer(Answer answer) : answer_(std::move(answer)) {
    sockaddr_in address = LocalPort(0);
    socklen_t size = sizeof(address);
    bind(listening_, reinterpret_cast<sockaddr*>(&address), size);
    listen(listening_, 8);
    getsockname(listening_, reinterpret_cast<sockaddr*>(&address), &size);
    port_ = ntohs(address.sin_port);
    thread_ = std::thread([this] { Serve(); });
  }
  ~HostileServer() {
    shutdown(listening_, SHUT_RDWR);
    thread_.join();
    close(listening_);
  }
  HostileServer(const HostileServer&) = delete;
  HostileServer& operator=(const HostileServer&) = delete;

  std::string Address() const { return "http://127.0.0.1:" + std::to_string(port_); }
  std::size_t Sent() const { return sent_; }  // bytes
  int Connections() const { return connections_; }

 private:
  void Serve() {
    for (int connection = 0; (connection = accept(listening_, nullptr, nullptr)) >= 0;) {
      ++connections_;
      Respond(connection);
      close(connection);
    }
  }
  // Until the client hangs up.
  void Respond(int connection) {
    std::array<char, 4096> request{};
    recv(connection, request.data(), request.size(), 0);
    if (!SendBytes(connection, answer_.first) || answer_.hangs_up) return;
    if (answer_.repeated.empty()) recv(connection, request.data(), request.size(), 0);
    while (!answer_.repeated.empty() && SendBytes(connection, answer_.repeated)) {
      sent_ += answer_.repeated.size();
      std::this_thread::sleep_for(std::chrono::milliseconds(answer_.pause_ms));
    }
  }

  Answer answer_;
  int listening_ = socket(AF_INET, SOCK_STREAM, 0);
  std::uint16_t port_ = 0;
  std::atomic<std::size_t> sent_ = 0;
  std::atomic<int> connections_ = 0;
  std::thread thread_;
};

}  // namespace velumar
