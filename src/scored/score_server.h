#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "scored/allowed_hosts.h"
#include "scored/connection_deadlines.h"
#include "scored/post_limit.h"
#include "scored/score_store.h"

struct MHD_Daemon;

namespace velumar {

struct ScoreServerSettings {
  std::string listen = "127.0.0.1";  // an address in figures, of either kind
  std::uint16_t port = 8080;         // 0: any that is free
  std::string database;
  int posts_per_minute = 30;                 // of one address
  std::vector<std::string> allowed_hosts{};  // names in a Host header, beside those of AllowedHosts
  std::chrono::milliseconds longest_connection = std::chrono::seconds{10};
};

// Takes scores and lists the best ten, over HTTP, on a thread of its own for as long as the object
// lives:
//   GET /zanno/getscore.php        the list as text, lines separated by CR LF
//   GET /zanno/postscore.php?…     a score, as ParseScore reads it
// A browser sends the requests of any web page here, so those that a page makes are refused.
class ScoreServer {
 public:
  // Throws std::runtime_error naming what can't be used: address, port or database.
  explicit ScoreServer(const ScoreServerSettings& settings);
  ~ScoreServer();
  ScoreServer(const ScoreServer&) = delete;
  ScoreServer& operator=(const ScoreServer&) = delete;

  std::uint16_t Port() const;

  struct Reply {
    unsigned status = 200;
    std::string text;
  };
  // The answer to a request's target as it came over the line, from that address.
  Reply Answer(const std::string& target, const std::string& address);
  // Why a request with this header line isn't answered; empty when nothing speaks against it.
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
