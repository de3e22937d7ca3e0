#include "charthost/drawings/drawing_file.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "base/paths.h"
#include "base/whole_file.h"
#include "charthost/drawings/drawing_list.h"

namespace velumar {

namespace fs = std::filesystem;

namespace {

using Json = nlohmann::ordered_json;

constexpr int kVersion = 1;
constexpr std::size_t kLargest = 32 << 20;  // bytes
constexpr std::size_t kLongestName = 200;
constexpr std::int32_t kLatest = 1'000'000;  // bars after the newest one
constexpr double kHighestPrice = 1e15;

void Require(bool holds, const std::string& what) {
  if (!holds) throw DrawingFileError(what);
}

Json AnchorJson(const Anchor& anchor) {
  Json json = {{"date", anchor.time.date}, {"time", anchor.time.time}, {"price", anchor.price}};
  if (anchor.time.later != 0) {
    json["later"] = anchor.time.later;
    json["interval"] = anchor.time.interval;
    json["bars_per_day"] = anchor.time.bars_per_day;
  }
  return json;
}

Json DrawingJson(const Drawing& drawing) {
  Json json = {{"kind", RowOf(drawing.kind).key},
               {"colour", drawing.colour},
               {"known", drawing.known},
               {"anchors", Json::array()}};
  if (!drawing.text.empty()) json["text"] = drawing.text;
  for (const Anchor& anchor : drawing.anchors) json["anchors"].push_back(AnchorJson(anchor));
  return json;
}

std::string TextIn(const Json& json, const char* key, std::size_t longest) {
  auto text = json.at(key).get<std::string>();
  const bool plain =
      std::ranges::none_of(text, [](unsigned char c) { return c < ' ' || c == 0x7F; });
  Require(plain && text.size() <= longest,
          std::string("\"") + key + "\" is too long or has control characters");
  return text;
}

template <typename Number>
Number NumberIn(const Json& json, const char* key, Number least, Number most) {
  const Json& value = json.at(key);
  const std::string name = std::string("\"") + key + "\"";
  if constexpr (std::is_integral_v<Number>) {
    Require(value.is_number_integer(), name + " is not a whole number");
  } else {
    Require(value.is_number(), name + " is not a number");
  }
  // A whole number beyond 64 bits is a fraction for the library, and one beyond 63 wraps below 0.
  const auto number =
      value.get<std::conditional_t<std::is_integral_v<Number>, std::int64_t, double>>();
  Require(number >= least && number <= most, name + " is out of its range");
  return static_cast<Number>(number);
}

Anchor AnchorOf(const Json& json) {
  Anchor anchor;
  anchor.time.date = NumberIn<std::int32_t>(json, "date", 0, 99991231);
  anchor.time.time = NumberIn<std::int32_t>(json, "time", 0, 235959);
  anchor.price = NumberIn<double>(json, "price", -kHighestPrice, kHighestPrice);
  if (json.contains("later")) {
    anchor.time.later = NumberIn<std::int32_t>(json, "later", -kLatest, kLatest);
    anchor.time.interval = NumberIn<std::int32_t>(json, "interval", -1, 1440);
    anchor.time.bars_per_day = NumberIn<double>(json, "bars_per_day", 1, 100'000);
  }
  return anchor;
}

Drawing DrawingOf(const Json& json) {
  const auto key = json.at("kind").get<std::string>();
  const auto& rows = DrawingCatalogue();
  const auto row =
      std::ranges::find_if(rows, [&](const DrawingRow& one) { return one.key == key; });
  Require(row != rows.end(), "the kind \"" + key.substr(0, 40) + "\" is unknown");
  Drawing drawing{.kind = row->kind};
  drawing.colour = NumberIn<int>(json, "colour", 0, Drawing::kColours - 1);
  drawing.known = NumberIn<std::int64_t>(json, "known", 0, std::int64_t{99991231} * 2000);
  for (const Json& anchor : json.at("anchors")) drawing.anchors.push_back(AnchorOf(anchor));
  Require(drawing.anchors.size() == row->anchors, std::string("a drawing of the kind \"") +
                                                      row->key + "\" needs " +
                                                      std::to_string(row->anchors) + " anchors");
  if (row->kind == DrawingKind::kText) drawing.text = TextIn(json, "text", Drawing::kLongestText);
  return drawing;
}

DrawingsBySecurity DrawingsOf(const Json& whole) {
  DrawingsBySecurity drawings;
  Require(whole.at("version") == kVersion, "another version of Velumar has written it");
  for (const Json& security : whole.at("securities")) {
    SecurityKey key(TextIn(security, "symbol", kLongestName),
                    TextIn(security, "name", kLongestName));
    std::vector<Drawing> of_one;
    for (const Json& one : security.at("drawings")) of_one.push_back(DrawingOf(one));
    Require(of_one.size() <= DrawingList::kMost, key.first + " has too many drawings");
    const std::string symbol = key.first;
    Require(drawings.emplace(std::move(key), std::move(of_one)).second,
            symbol + " is listed twice");
  }
  return drawings;
}

}  // namespace

std::string DrawingsText(const DrawingsBySecurity& drawings) {
  Json securities = Json::array();
  for (const auto& [key, of_one] : drawings) {
    Json list = Json::array();
    for (const Drawing& drawing : of_one) list.push_back(DrawingJson(drawing));
    securities.push_back(
        {{"symbol", key.first}, {"name", key.second}, {"drawings", std::move(list)}});
  }
  const Json whole = {{"version", kVersion}, {"securities", std::move(securities)}};
  return whole.dump(1, ' ', false, Json::error_handler_t::replace) + "\n";
}

DrawingsBySecurity ReadDrawings(std::string_view text) {
  try {
    return DrawingsOf(Json::parse(text));
  } catch (const Json::exception& error) {
    throw DrawingFileError(error.what());
  }
}

DrawingsBySecurity LoadDrawings(const fs::path& file) {
  std::error_code missing;
  if (!fs::exists(fs::symlink_status(file, missing))) return {};
  const std::string text = ReadWholeFile(file, kLargest);
  try {
    return ReadDrawings(text);
  } catch (const DrawingFileError& error) {
    throw DrawingFileError("\"" + PathText(file) + "\" is damaged (" + error.what() +
                           "). Drawings are not saved until it is repaired, moved or deleted.");
  }
}

void ChangeDrawings(const fs::path& file, const SecurityKey& security,
                    const DrawingsChange& change) {
  DrawingsBySecurity all = LoadDrawings(file);
  std::vector<Drawing>& of_one = all[security];
  of_one = change(std::move(of_one));
  if (of_one.empty()) all.erase(security);
  const std::string text = DrawingsText(all);
  ReadDrawings(text);  // what is written can be read again
  fs::create_directories(file.parent_path());
  ReplaceWholeFile(file, text);
}

}  // namespace velumar
