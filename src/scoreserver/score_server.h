#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "scoreserver/client_limits.h"
#include "scoreserver/score_store.h"

struct MHD_Daemon;

namespace velumar {

struct ScoreServerSettings {
  std::string listen = "127.0.0.1";  // a numeric IPv4 or IPv6 address
  std::uint16_t port = 8080;         // 0: any free port
  std::string database;
  int posts_per_minute = 30;                 // per address
  std::vector<std::string> allowed_hosts{};  // host names, in addition to those of AllowedHosts
  std::chrono::milliseconds longest_connection = std::chrono::seconds{10};
};

// Accepts scores and lists the best ten over HTTP, on its own thread until it is destroyed:
//   GET /zanno/getscore.php        the list as text, lines separated by CR LF
//   GET /zanno/postscore.php?…     posts a score, see ParseScore
// Any web page can make a browser send requests here, so those with an Origin, or for a host name
// other than the service's own, are refused. Each connection takes one request.
class ScoreServer {
 public:
  // Throws std::runtime_error naming the address, port or database that can't be used.
  explicit ScoreServer(const ScoreServerSettings& settings);
  ~ScoreServer();
  ScoreServer(const ScoreServer&) = delete;
  ScoreServer& operator=(const ScoreServer&) = delete;

  std::uint16_t Port() const;

  struct Reply {
    unsigned status = 200;
    std::string text;
  };
  // Answers a request. `target` is the undecoded request target, `address` the client's.
  Reply Answer(const std::string& target, const std::string& address);
  // Why a request with this header is refused; empty if it isn't.
  std::string WhyRefused(std::string_view header, std::string_view value) const;

 private:
  struct Stop {
    void operator()(MHD_Daemon* daemon) const;
  };

  Reply Post(std::string_view query, const std::string& address);
  std::string List();

  ScoreStore store_;
  PostLimit limit_;
  AllowedHosts hosts_;
  ConnectionDeadlines deadlines_;
  std::unique_ptr<MHD_Daemon, Stop> daemon_;
};

}  // namespace velumar
