#include "platform/chart_link.h"

#include <array>
#include <nlohmann/json.hpp>
#include <utility>

namespace velumar {

namespace {

constexpr int kProtocol = 1;

using Command = ChartRequest::Command;
constexpr std::array<std::pair<Command, std::string_view>, 7> kCommands = {{
    {Command::kHello, "hello"},
    {Command::kCloseAll, "close all"},
    {Command::kOpen, "open"},
    {Command::kRefresh, "refresh"},
    {Command::kPositions, "positions"},
    {Command::kTheme, "theme"},
    {Command::kQuit, "quit"},
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

// Each order and each held side is a list of its members.
nlohmann::json OrderLists(const std::vector<OrderMark>& orders) {
  nlohmann::json lists = nlohmann::json::array();
  for (const OrderMark& o : orders) lists.push_back({o.bar, o.price, o.is_long, o.entry});
  return lists;
}

nlohmann::json HeldLists(const std::vector<HeldLine>& held) {
  nlohmann::json lists = nlohmann::json::array();
  for (const HeldLine& h : held) lists.push_back({h.is_long, h.price, h.quantity, h.profit});
  return lists;
}

ChartPositions ReadPositions(const nlohmann::json& request) {
  ChartPositions positions;
  for (const auto& list : request.value("orders", nlohmann::json::array())) {
    positions.orders.push_back({list.at(0), list.at(1), list.at(2), list.at(3)});
  }
  for (const auto& list : request.value("held", nlohmann::json::array())) {
    positions.held.push_back({list.at(0), list.at(1), list.at(2), list.at(3)});
  }
  return positions;
}

}  // namespace

std::string ChartLinkListener(std::uint32_t process) {
  return "_VELUMAR_CHART_LINK_" + std::to_string(process);
}

std::string ChartRequestText(const ChartRequest& request) {
  nlohmann::json text = {{"protocol", kProtocol}, {"do", NameOf(request.command)}};
  if (!request.folder.empty()) text["folder"] = request.folder;
  if (!request.symbol.empty()) text["symbol"] = request.symbol;
  if (request.interval) text["interval"] = *request.interval;
  if (!request.positions.orders.empty()) text["orders"] = OrderLists(request.positions.orders);
  if (!request.positions.held.empty()) text["held"] = HeldLists(request.positions.held);
  if (request.command == Command::kTheme) text["dark"] = request.dark;
  // A folder's name may hold bytes that are no UTF-8.
  return text.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

std::optional<ChartRequest> ReadChartRequest(std::string_view text) {
  try {
    const nlohmann::json read = nlohmann::json::parse(text);
    if (read.at("protocol") != kProtocol) return std::nullopt;
    const std::optional<Command> command = CommandOf(read.at("do").get<std::string>());
    if (!command) return std::nullopt;
    ChartRequest request{.command = *command,
                         .folder = read.value("folder", ""),
                         .symbol = read.value("symbol", ""),
                         .positions = ReadPositions(read),
                         .dark = read.value("dark", false)};
    if (read.contains("interval")) request.interval = read.at("interval").get<int>();
    return request;
  } catch (const nlohmann::json::exception&) {
    return std::nullopt;
  }
}

}  // namespace velumar
