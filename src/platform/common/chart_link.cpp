#include "platform/chart_link.h"

#include <nlohmann/json.hpp>

namespace velumar {

// A text that is no command reads as the first value.
NLOHMANN_JSON_SERIALIZE_ENUM(ChartRequest::Command,
                             {
                                 {ChartRequest::Command::kNone, nullptr},
                                 {ChartRequest::Command::kHello, "hello"},
                                 {ChartRequest::Command::kCloseAll, "close all"},
                                 {ChartRequest::Command::kOpen, "open"},
                                 {ChartRequest::Command::kRefresh, "refresh"},
                                 {ChartRequest::Command::kPositions, "positions"},
                                 {ChartRequest::Command::kPicture, "picture"},
                                 {ChartRequest::Command::kTheme, "theme"},
                                 {ChartRequest::Command::kQuit, "quit"},
                             })
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE_WITH_DEFAULT(OrderMark, bar, price, is_long, entry, earlier)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(HeldLine, is_long, price, quantity, profit)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(PlanLine, bar, price, stop, reached, waits)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE_WITH_DEFAULT(ChartPositions, orders, held, plans, quantity,
                                                profit_per_point)

namespace {

constexpr int kProtocol = 1;

using Command = ChartRequest::Command;

}  // namespace

std::string ChartLinkListener(std::uint32_t process) {
  return "_VELUMAR_CHART_LINK_" + std::to_string(process);
}

std::string ChartRequestText(const ChartRequest& request) {
  nlohmann::json text = {{"protocol", kProtocol}, {"do", request.command}};
  if (!request.folder.empty()) text["folder"] = request.folder;
  if (!request.symbol.empty()) text["symbol"] = request.symbol;
  if (request.interval) text["interval"] = *request.interval;
  if (request.alone) text["alone"] = true;
  if (request.positions != ChartPositions()) text["positions"] = request.positions;
  if (!request.picture.empty()) text["picture"] = request.picture;
  if (request.command == Command::kTheme) text["dark"] = request.dark;
  // A folder's name may hold bytes that are no UTF-8.
  return text.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

std::optional<ChartRequest> ReadChartRequest(std::string_view text) {
  try {
    const nlohmann::json read = nlohmann::json::parse(text);
    if (read.at("protocol") != kProtocol) return std::nullopt;
    const auto command = read.at("do").get<Command>();
    if (command == Command::kNone) return std::nullopt;
    ChartRequest request{.command = command,
                         .folder = read.value("folder", ""),
                         .symbol = read.value("symbol", ""),
                         .alone = read.value("alone", false),
                         .positions = read.value("positions", ChartPositions()),
                         .picture = read.value("picture", ""),
                         .dark = read.value("dark", false)};
    if (read.contains("interval")) request.interval = read.at("interval").get<int>();
    return request;
  } catch (const nlohmann::json::exception&) {
    return std::nullopt;
  }
}

}  // namespace velumar
