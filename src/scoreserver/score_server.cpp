#include "scoreserver/score_server.h"

#include <arpa/inet.h>
#include <microhttpd.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include <cstring>
#include <iostream>
#include <stdexcept>
#include <string_view>

#include "base/text.h"

namespace velumar {

namespace {

constexpr std::string_view kListPath = "/zanno/getscore.php";
constexpr std::string_view kPostPath = "/zanno/postscore.php?";
constexpr int kTop = 10;

// Limits of the connections.
constexpr std::size_t kConnectionMemory = 16 * 1024;  // bytes; longer requests are refused
constexpr unsigned kConnections = 200;
constexpr unsigned kConnectionsPerAddress = 20;

struct Listening {
  sockaddr_storage address{};
  bool v6 = false;
};

Listening ListeningOn(const std::string& text, std::uint16_t port) {
  Listening listening;
  auto& v4 = reinterpret_cast<sockaddr_in&>(listening.address);
  auto& v6 = reinterpret_cast<sockaddr_in6&>(listening.address);
  if (inet_pton(AF_INET, text.c_str(), &v4.sin_addr) == 1) {
    v4.sin_family = AF_INET;
    v4.sin_port = htons(port);
  } else if (inet_pton(AF_INET6, text.c_str(), &v6.sin6_addr) == 1) {
    v6.sin6_family = AF_INET6;
    v6.sin6_port = htons(port);
    listening.v6 = true;
  } else {
    throw std::runtime_error("\"" + text + "\" is not an IP address such as 127.0.0.1 or ::1");
  }
  return listening;
}

// The client's address; of an IPv6 address the first half, which a household shares.
std::string AddressOf(MHD_Connection* connection) {
  const MHD_ConnectionInfo* const info =
      MHD_get_connection_info(connection, MHD_CONNECTION_INFO_CLIENT_ADDRESS);
  if (info == nullptr || info->client_addr == nullptr) return {};
  if (info->client_addr->sa_family == AF_INET) {
    const auto* const v4 = reinterpret_cast<const sockaddr_in*>(info->client_addr);
    return {reinterpret_cast<const char*>(&v4->sin_addr), sizeof(v4->sin_addr)};
  }
  const auto* const v6 = reinterpret_cast<const sockaddr_in6*>(info->client_addr);
  return {reinterpret_cast<const char*>(&v6->sin6_addr), sizeof(v6->sin6_addr) / 2};
}

MHD_Result Send(MHD_Connection* connection, const ScoreServer::Reply& reply) {
  MHD_Response* const response = MHD_create_response_from_buffer(
      reply.text.size(), const_cast<char*>(reply.text.data()), MHD_RESPMEM_MUST_COPY);
  if (response == nullptr) return MHD_NO;
  MHD_add_response_header(response, "Content-Type", "text/plain; charset=utf-8");
  MHD_add_response_header(response, "X-Content-Type-Options", "nosniff");
  MHD_add_response_header(response, "Cache-Control", "no-store");
  MHD_add_response_header(response, MHD_HTTP_HEADER_CONNECTION, "close");
  const MHD_Result sent = MHD_queue_response(connection, reply.status, response);
  MHD_destroy_response(response);
  return sent;
}

// Keeps the undecoded target with its request.
void* KeepTarget(void*, const char* target, MHD_Connection*) { return new std::string(target); }

void DropTarget(void*, MHD_Connection*, void** target, MHD_RequestTerminationCode) {
  delete static_cast<std::string*>(*target);
  *target = nullptr;
}

void FollowConnection(void* deadlines, MHD_Connection* connection, void**,
                      MHD_ConnectionNotificationCode code) {
  auto& all = *static_cast<ConnectionDeadlines*>(deadlines);
  const MHD_ConnectionInfo* const info =
      MHD_get_connection_info(connection, MHD_CONNECTION_INFO_CONNECTION_FD);
  if (info == nullptr) return;
  code == MHD_CONNECTION_NOTIFY_STARTED ? all.Opened(info->connect_fd)
                                        : all.Closed(info->connect_fd);
}

// Checks the headers of a request one by one.
struct HeaderCheck {
  const ScoreServer& server;
  std::string refusal;
};

MHD_Result CheckHeader(void* check, MHD_ValueKind, const char* header, const char* value) {
  auto& [server, refusal] = *static_cast<HeaderCheck*>(check);
  refusal = server.WhyRefused(header, value == nullptr ? "" : value);
  return refusal.empty() ? MHD_YES : MHD_NO;
}

MHD_Result Handle(void* server, MHD_Connection* connection, const char*, const char* method,
                  const char*, const char*, std::size_t* body, void** target) {
  if (*body != 0) return MHD_NO;
  HeaderCheck check{*static_cast<const ScoreServer*>(server), {}};
  MHD_get_connection_values(connection, MHD_HEADER_KIND, &CheckHeader, &check);
  if (!check.refusal.empty()) return Send(connection, {MHD_HTTP_FORBIDDEN, check.refusal});
  if (std::strcmp(method, MHD_HTTP_METHOD_GET) != 0) {
    return Send(connection, {MHD_HTTP_METHOD_NOT_ALLOWED, "Only GET is supported."});
  }
  return Send(connection, static_cast<ScoreServer*>(server)->Answer(
                              *static_cast<std::string*>(*target), AddressOf(connection)));
}

}  // namespace

ScoreServer::ScoreServer(const ScoreServerSettings& settings)
    : store_(settings.database),
      limit_(settings.posts_per_minute),
      hosts_(settings.allowed_hosts),
      deadlines_(settings.longest_connection) {
  const Listening listening = ListeningOn(settings.listen, settings.port);
  const unsigned flags =
      MHD_USE_INTERNAL_POLLING_THREAD | MHD_USE_AUTO | (listening.v6 ? unsigned{MHD_USE_IPv6} : 0U);
  daemon_.reset(MHD_start_daemon(flags, 0, nullptr, nullptr, &Handle, this,          //
                                 MHD_OPTION_SOCK_ADDR, &listening.address,           //
                                 MHD_OPTION_URI_LOG_CALLBACK, &KeepTarget, nullptr,  //
                                 MHD_OPTION_NOTIFY_COMPLETED, &DropTarget, nullptr,  //
                                 MHD_OPTION_NOTIFY_CONNECTION, &FollowConnection, &deadlines_,
                                 MHD_OPTION_CONNECTION_MEMORY_LIMIT, kConnectionMemory,       //
                                 MHD_OPTION_CONNECTION_LIMIT, kConnections,                   //
                                 MHD_OPTION_PER_IP_CONNECTION_LIMIT, kConnectionsPerAddress,  //
                                 MHD_OPTION_END));
  if (!daemon_) {
    throw std::runtime_error("cannot listen on " + settings.listen + ", port " +
                             std::to_string(settings.port) + ": " + std::strerror(errno));
  }
}

ScoreServer::~ScoreServer() = default;

void ScoreServer::Stop::operator()(MHD_Daemon* daemon) const { MHD_stop_daemon(daemon); }

std::uint16_t ScoreServer::Port() const {
  return MHD_get_daemon_info(daemon_.get(), MHD_DAEMON_INFO_BIND_PORT)->port;
}

ScoreServer::Reply ScoreServer::Answer(const std::string& target, const std::string& address) {
  try {
    if (target == kListPath) return {MHD_HTTP_OK, List()};
    if (target.starts_with(kPostPath)) {
      return Post(std::string_view(target).substr(kPostPath.size()), address);
    }
    return {MHD_HTTP_NOT_FOUND, "Not found."};
  } catch (const BadScore& error) {
    return {MHD_HTTP_BAD_REQUEST, std::string("The score was refused: ") + error.what() + "."};
  } catch (const std::exception& error) {
    std::cerr << "velumar-scored: " << error.what() << std::endl;
    return {MHD_HTTP_INTERNAL_SERVER_ERROR, "The scores are not available at the moment."};
  }
}

std::string ScoreServer::WhyRefused(std::string_view header, std::string_view value) const {
  const std::string name = UpperCased(header);
  if (name == "ORIGIN" || (name == "SEC-FETCH-SITE" && value != "none" && value != "same-origin")) {
    return "Requests from web pages are refused.";
  }
  if (name == "HOST" && !hosts_.Allows(value)) {
    return "The service does not answer to this host name; allow it with --allow-host.";
  }
  return {};
}

ScoreServer::Reply ScoreServer::Post(std::string_view query, const std::string& address) {
  const Score score = ParseScore(query);
  if (!limit_.Allows(address, PostLimit::Moment::clock::now())) {
    return {MHD_HTTP_TOO_MANY_REQUESTS, "Too many scores in one minute; try again later."};
  }
  if (!store_.Add(score)) {
    return {MHD_HTTP_OK, "Not saved: the score is not among the best " +
                             std::to_string(ScoreStore::kMaxScores) + "."};
  }
  return {MHD_HTTP_OK, "Accepted."};
}

std::string ScoreServer::List() {
  std::string text;
  std::size_t rank = 0;
  for (const Score& score : store_.Top(kTop)) {
    if (rank > 0) text += "\r\n";
    text += ScoreLine(++rank, score);
  }
  return text;
}

}  // namespace velumar
