#include "platform/chart_link.h"

#include <array>
#include <nlohmann/json.hpp>
#include <utility>

namespace velumar {

namespace {

constexpr int kProtocol = 1;

using Command = ChartRequest::Command;
constexpr std::array<std::pair<Command, std::string_view>, 4> kCommands = {{
    {Command::kHello, "hello"},
    {Command::kCloseAll, "close all"},
    {Command::kOpen, "open"},
    {Command::kRefresh, "refresh"},
}};

std::string_view NameOf(Command command) {
  for (const auto& [value, name] : kCommands) {
    if (value == command) return name;
  }
  return {};
}

std::optional<Command> CommandOf(std::string_view text) {
  for (const auto& [value, name] : kCommands) {
    if (name == text) return value;
  }
  return std::nullopt;
}

}  // namespace

std::string ChartRequestText(const ChartRequest& request) {
  nlohmann::json text = {{"protocol", kProtocol}, {"do", NameOf(request.command)}};
  if (!request.folder.empty()) text["folder"] = request.folder;
  if (!request.symbol.empty()) text["symbol"] = request.symbol;
  if (request.interval) text["interval"] = *request.interval;
  // A folder's name may hold bytes that are no UTF-8.
  return text.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

std::optional<ChartRequest> ReadChartRequest(std::string_view text) {
  try {
    const nlohmann::json read = nlohmann::json::parse(text);
    if (read.at("protocol") != kProtocol) return std::nullopt;
    const std::optional<Command> command = CommandOf(read.at("do").get<std::string>());
    if (!command) return std::nullopt;
    ChartRequest request{*command, read.value("folder", ""), read.value("symbol", ""), {}};
    if (read.contains("interval")) request.interval = read.at("interval").get<int>();
    return request;
  } catch (const nlohmann::json::exception&) {
    return std::nullopt;
  }
}

}  // namespace velumar
