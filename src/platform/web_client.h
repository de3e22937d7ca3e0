#pragma once

#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>

#include "platform/event_loop.h"

namespace velumar {

// Why a request came to nothing, as the end of a sentence: "nobody answered within 60 seconds".
class WebError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// Plain requests to a web service of the trader's choice. Nobody trusts its answers: they are
// bounded in time and size, and lead nowhere else.
class WebClient {
 public:
  virtual ~WebClient() = default;
  // Asks for `target` (path and query) below `address`, as "http://scores.example:8080", and gives
  // back the answer's text. Not a byte of the target is changed on its way, so line ends in it are
  // refused. Window events run meanwhile; the request is given up once `wanted` says no. Throws
  // WebError, also for an answer other than success.
  virtual std::string Get(const std::string& address, std::string_view target,
                          const std::function<bool()>& wanted) = 0;
};

// The one of this system.
std::unique_ptr<WebClient> SystemWebClient(EventLoop& events);

}  // namespace velumar
