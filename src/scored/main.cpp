#include <CLI/CLI.hpp>
#include <csignal>
#include <exception>
#include <iostream>

#include "scored/score_server.h"

namespace velumar {

namespace {

constexpr int kFailure = 1;
constexpr int kBadArguments = 2;

// All threads leave the signals that end a service to the one that waits for them.
sigset_t BlockEndings() {
  sigset_t endings;
  sigemptyset(&endings);
  sigaddset(&endings, SIGINT);
  sigaddset(&endings, SIGTERM);
  pthread_sigmask(SIG_BLOCK, &endings, nullptr);
  return endings;
}

std::string WebAddress(const ScoreServerSettings& settings, std::uint16_t port) {
  const bool v6 = settings.listen.find(':') != std::string::npos;
  return "http://" + (v6 ? "[" + settings.listen + "]" : settings.listen) + ":" +
         std::to_string(port);
}

void Serve(const ScoreServerSettings& settings) {
  const sigset_t endings = BlockEndings();
  const ScoreServer server(settings);
  std::cout << "velumar-scored: listening on " << WebAddress(settings, server.Port()) << std::endl;
  int ending = 0;
  sigwait(&endings, &ending);
}

int Main(int count, char** arguments) {
  CLI::App app("Takes the scores that traders post from Velumar, and lists the best ten.",
               "velumar-scored");
  app.footer("Anybody who reaches the port can post any score: see velumar-scored(1).");
  app.set_version_flag("--version", "velumar-scored " VELUMAR_VERSION);
  ScoreServerSettings settings;
  app.add_option("--database", settings.database,
                 "the scores' file (SQLite), made when it is missing")
      ->required();
  app.add_option("--listen", settings.listen, "the address to listen on, in figures")
      ->capture_default_str();
  app.add_option("--port", settings.port, "the port; 0 for any that is free")
      ->capture_default_str();
  app.add_option("--posts-per-minute", settings.posts_per_minute,
                 "how many scores are taken from one address")
      ->check(CLI::PositiveNumber)
      ->capture_default_str();
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
