#include <CLI/CLI.hpp>
#include <csignal>
#include <cstdint>
#include <exception>
#include <iostream>

#include "scoreserver/score_server.h"

namespace velumar {

namespace {

constexpr int kFailure = 1;
constexpr int kBadArguments = 2;

constexpr int kMostPosts = 1'000'000;

std::string NotEmpty(const std::string& text) { return text.empty() ? "must not be empty" : ""; }

// Blocks the signals that stop the service in all threads, so that sigwait gets them.
sigset_t BlockStopSignals() {
  sigset_t signals;
  sigemptyset(&signals);
  sigaddset(&signals, SIGINT);
  sigaddset(&signals, SIGTERM);
  pthread_sigmask(SIG_BLOCK, &signals, nullptr);
  return signals;
}

std::string WebAddress(const ScoreServerSettings& settings, std::uint16_t port) {
  const bool v6 = settings.listen.find(':') != std::string::npos;
  return "http://" + (v6 ? "[" + settings.listen + "]" : settings.listen) + ":" +
         std::to_string(port);
}

void Serve(const ScoreServerSettings& settings) {
  const sigset_t signals = BlockStopSignals();
  const ScoreServer server(settings);
  std::cout << "velumar-scored: listening on " << WebAddress(settings, server.Port()) << std::endl;
  int received = 0;
  sigwait(&signals, &received);
}

int Main(int count, char** arguments) {
  CLI::App app("Accepts the scores that traders post from Velumar, and lists the best ten.",
               "velumar-scored");
  app.footer("Anyone who can reach the port can post any score: see velumar-scored(1).");
  app.set_version_flag("--version", "velumar-scored " VELUMAR_VERSION);
  ScoreServerSettings settings;
  app.add_option("--database", settings.database, "the score file (SQLite), created if missing")
      ->required()
      ->check(NotEmpty);
  app.add_option("--listen", settings.listen, "the IP address to listen on")->capture_default_str();
  app.add_option("--port", settings.port, "the port; 0 for any free one")
      ->check(CLI::Range(0, int{UINT16_MAX}))
      ->capture_default_str();
  app.add_option("--posts-per-minute", settings.posts_per_minute,
                 "how many scores one address may post per minute")
      ->check(CLI::Range(1, kMostPosts))
      ->capture_default_str();
  app.add_option("--allow-host", settings.allowed_hosts,
                 "another host name to answer to, besides IP addresses, \"localhost\" and the "
                 "machine's own name; can be repeated")
      ->check(NotEmpty);
  try {
    app.parse(count, arguments);
    Serve(settings);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? 0 : kBadArguments;
  } catch (const std::exception& error) {
    std::cerr << "velumar-scored: " << error.what() << std::endl;
    return kFailure;
  }
  return 0;
}

}  // namespace

}  // namespace velumar

int main(int count, char** arguments) { return velumar::Main(count, arguments); }
