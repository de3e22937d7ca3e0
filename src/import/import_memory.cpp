#include "import/import_memory.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <nlohmann/json.hpp>
#include <optional>
#include <stdexcept>
#include <unordered_map>
#include <utility>

#include "base/dates.h"
#include "base/number_text.h"
#include "base/paths.h"
#include "base/whole_file.h"
#include "import/price_reader.h"
#include "marketdata/interval.h"

// The only file of this folder that includes the JSON library, whose headers take seconds to
// compile.

namespace velumar {

namespace fs = std::filesystem;

namespace {

using Json = nlohmann::ordered_json;

constexpr std::size_t kLargestMemory = 16 << 20;  // bytes
constexpr std::size_t kMostRemembered = 20000;
constexpr std::size_t kLongestText = 4096;
constexpr int kVersion = 1;

template <typename Value>
struct NamedValue {
  std::string_view name;
  Value value;
};

constexpr std::array<NamedValue<DateOrder>, 3> kDateOrders = {{{"dmy", DateOrder::kDayMonthYear},
                                                               {"mdy", DateOrder::kMonthDayYear},
                                                               {"ymd", DateOrder::kYearMonthDay}}};
constexpr std::array<NamedValue<Prices>, 2> kPrices = {
    {{"unadjusted", Prices::kAsTraded}, {"adjusted", Prices::kAdjusted}}};
constexpr std::array<NamedValue<BarLabel>, 2> kLabels = {
    {{"start", BarLabel::kStart}, {"end", BarLabel::kEnd}}};
constexpr std::array<NamedValue<TooLong>, 3> kTooLong = {
    {{"ask", TooLong::kAsk}, {"last", TooLong::kKeepLast}, {"split", TooLong::kSplitByYear}}};
constexpr std::array<NamedValue<Remember>, 2> kRemember = {
    {{"file", Remember::kFile}, {"folder", Remember::kFolder}}};

template <typename Names, typename Value>
std::string NameOf(const Names& names, Value value) {
  for (const auto& one : names) {
    if (one.value == value) return std::string(one.name);
  }
  return "";
}

// One of the options as JSON. Options that are not set are left out.
class OptionWriter {
 public:
  template <typename Value>
  void Set(const char* name, const std::optional<Value>& value) {
    if (value) json_[name] = *value;
  }
  template <typename Names, typename Value>
  void SetName(const char* name, const Names& names, const std::optional<Value>& value) {
    if (value) json_[name] = NameOf(names, *value);
  }
  Json Take() { return std::move(json_); }

 private:
  Json json_ = Json::object();
};

Json OptionsJson(const ImportOptions& options) {
  OptionWriter writer;
  writer.Set("symbol", options.symbol);
  writer.Set("name", options.name);
  writer.Set("interval", options.interval);
  writer.Set("date_format", options.date_format);
  writer.SetName("date_order", kDateOrders, options.date_order);
  writer.Set("decimal_comma", options.decimal_comma);
  writer.SetName("prices", kPrices, options.prices);
  writer.SetName("label", kLabels, options.label);
  writer.Set("scale", std::optional(options.scale));
  writer.Set("from", options.from);
  writer.Set("to", options.to);
  writer.Set("from_zone", options.from_zone);
  writer.Set("to_zone", options.to_zone);
  writer.Set("utc", std::optional(options.utc));
  writer.SetName("too_long", kTooLong, std::optional(options.too_long));
  writer.SetName("remember", kRemember, std::optional(options.remember));
  return writer.Take();
}

void Require(bool holds, std::string_view what) {
  if (!holds) throw std::runtime_error(std::string(what));
}

std::string CheckedText(const Json& json) {
  auto text = json.get<std::string>();
  const bool plain =
      std::ranges::none_of(text, [](char c) { return static_cast<unsigned char>(c) < ' '; });
  Require(plain && text.size() <= kLongestText, "a text is too long or has control characters");
  return text;
}

std::optional<std::string> TextIn(const Json& json, const char* name) {
  return json.contains(name) ? std::optional(CheckedText(json.at(name))) : std::nullopt;
}

// The library would cut a number that does not fit.
template <typename Number>
Number WholeNumber(const Json& json) {
  const std::optional<Number> number = ExactNumber<Number>(json.dump());
  Require(number.has_value(), "a number is too large or not whole");
  return *number;
}

std::optional<std::int32_t> NumberIn(const Json& json, const char* name) {
  return json.contains(name) ? std::optional(WholeNumber<std::int32_t>(json.at(name)))
                             : std::nullopt;
}

std::optional<bool> BoolIn(const Json& json, const char* name) {
  return json.contains(name) ? std::optional(json.at(name).get<bool>()) : std::nullopt;
}

template <typename Value, std::size_t kCount>
std::optional<Value> ChoiceIn(const Json& json, const char* name,
                              const std::array<NamedValue<Value>, kCount>& names) {
  if (!json.contains(name)) return std::nullopt;
  const auto text = json.at(name).get<std::string>();
  for (const auto& one : names) {
    if (one.name == text) return one.value;
  }
  throw std::runtime_error("\"" + text + "\" is unknown");
}

ImportOptions OptionsOf(const Json& json) {
  ImportOptions options{
      .symbol = TextIn(json, "symbol"),
      .name = TextIn(json, "name"),
      .interval = NumberIn(json, "interval"),
      .date_format = TextIn(json, "date_format"),
      .date_order = ChoiceIn(json, "date_order", kDateOrders),
      .decimal_comma = BoolIn(json, "decimal_comma"),
      .prices = ChoiceIn(json, "prices", kPrices),
      .label = ChoiceIn(json, "label", kLabels),
      .scale = NumberIn(json, "scale").value_or(1),
      .from = NumberIn(json, "from"),
      .to = NumberIn(json, "to"),
      .from_zone = TextIn(json, "from_zone"),
      .to_zone = TextIn(json, "to_zone"),
      .utc = BoolIn(json, "utc").value_or(false),
      .too_long = ChoiceIn(json, "too_long", kTooLong).value_or(TooLong::kAsk),
      .remember = ChoiceIn(json, "remember", kRemember).value_or(Remember::kFile)};
  Require(!options.interval || IsReplayInterval(*options.interval), "an interval is unknown");
  Require(IsScale(options.scale), "a scale is not a power of ten");
  for (const auto& day : {options.from, options.to}) {
    Require(!day || IsRealDate(*day), "a day is not a date");
  }
  return options;
}

RememberedFile FileOf(const Json& json) {
  RememberedFile file{.file = NativePath(CheckedText(json.at("file"))),
                      .options = OptionsOf(json.at("options"))};
  Require(file.file.is_absolute(), "a file name has no folder");
  file.stamp.size = WholeNumber<std::int64_t>(json.at("size"));
  file.stamp.changed_ns = WholeNumber<std::int64_t>(json.at("changed"));
  return file;
}

fs::path MemoryIn(std::string_view directory) { return NativePath(directory) / kImportMemory; }

void Write(const fs::path& path, const std::vector<RememberedFile>& files) {
  Json list = Json::array();
  for (const RememberedFile& one : files) {
    list.push_back({{"file", PathText(one.file)},
                    {"size", one.stamp.size},
                    {"changed", one.stamp.changed_ns},
                    {"options", OptionsJson(one.options)}});
  }
  const Json whole = {{"version", kVersion}, {"files", std::move(list)}};
  ReplaceWholeFile(path, whole.dump(1, ' ', false, Json::error_handler_t::replace) + "\n");
}

}  // namespace

std::vector<RememberedFile> RememberedImports(std::string_view directory) {
  const fs::path path = MemoryIn(directory);
  std::error_code missing;
  if (!fs::exists(fs::symlink_status(path, missing))) return {};
  try {
    const Json whole = Json::parse(ReadWholeFile(path, kLargestMemory));
    Require(whole.at("version") == kVersion, "another version of Velumar has written it");
    std::vector<RememberedFile> files;
    for (const Json& one : whole.at("files")) files.push_back(FileOf(one));
    Require(files.size() <= kMostRemembered, "it names too many files");
    return files;
  } catch (const std::exception& error) {
    throw ImportError("\"" + PathText(path) + "\" is damaged (" + error.what() +
                      "); delete it and import the files again to have them remembered");
  }
}

std::string RememberImports(std::string_view directory, std::vector<RememberedFile> files) {
  if (files.empty()) return "";
  try {
    std::vector<RememberedFile> all = RememberedImports(directory);
    std::unordered_map<fs::path::string_type, std::size_t> places;
    for (std::size_t i = 0; i < all.size(); ++i) places.emplace(all[i].file.native(), i);
    for (RememberedFile& fresh : files) {
      fresh.file = fs::weakly_canonical(fresh.file);
      fresh.options.replace = false;
      const auto [place, is_new] = places.emplace(fresh.file.native(), all.size());
      if (is_new) all.emplace_back();
      all[place->second] = std::move(fresh);
    }
    if (all.size() > kMostRemembered) {
      all.erase(all.begin(), all.end() - static_cast<std::ptrdiff_t>(kMostRemembered));
    }
    Write(MemoryIn(directory), all);
    return "";
  } catch (const std::exception& error) {
    return "the file is not remembered for updates: " + std::string(error.what());
  }
}

}  // namespace velumar
