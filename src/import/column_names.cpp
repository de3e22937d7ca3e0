#include "import/column_names.h"

#include <algorithm>
#include <utility>

#include "base/text.h"

namespace velumar {

namespace {

struct Names {
  PriceField field;
  std::vector<std::string_view> names;  // as PlainName returns them, best first
};

const std::vector<Names>& AllNames() {
  static const std::vector<Names> names = {
      {PriceField::kDate, {"DATE",          "DATETIME",    "TIMESTAMP",   "DTYYYYMMDD",
                           "YYYYMMDD",      "GMTTIME",     "LOCALTIME",   "UTCTIME",
                           "TRADEDATE",     "TRADINGDATE", "TRADINGDAY",  "SESSIONDATE",
                           "DATUM",         "FECHA",       "DATA",        "DAY",
                           "DATEUTC",       "DATEGMT",     "DATEANDTIME", "DATUMZEIT",
                           "OPENTIME",      "STARTTIME",   "TIMEOPEN",    "TSEVENT",
                           "BARTIME",       "CANDLETIME",  "UNIX",        "UNIXTIME",
                           "UNIXTIMESTAMP", "EPOCH",       "TS",          "MTS",
                           "WINDOWSTART",   "D",           "T",           "TARIH",
                           "DATO",          "Дата",        "日期",        "日付",
                           "날짜",          "일자"}},
      {PriceField::kTime,
       {"TIME", "HHMMSS", "TIMEHHMMSS", "HHMM", "ZEIT", "UHRZEIT", "HORA", "HEURE", "TIMEUTC",
        "TIMEGMT"}},
      {PriceField::kOpen,
       {"OPEN",      "OPENPRICE", "PRICEOPEN",  "PXOPEN", "OPENING",    "OPENINGPRICE", "O",
        "ERöFFNUNG", "ERÖFFNUNG", "EROEFFNUNG", "ERSTER", "APERTURA",   "OUVERTURE",    "OUV",
        "ABERTURA",  "FIRST",     "ERöFFN",     "ANFANG", "OTWARCIE",   "AçıLış",       "öPPEN",
        "OTEVřENí",  "NYITó",     "åBNING",     "AVAUS",  "DESCHIDERE", "Откр",         "Открытие",
        "开盘",      "开盘价",    "始値",       "시가"}},
      {PriceField::kHigh,
       {"HIGH",      "HIGHPRICE", "PRICEHIGH", "PXHIGH",  "HIGHEST", "H",        "HOCH",
        "TAGESHOCH", "MAX",       "MAXIMO",    "MáXIMO",  "MáX",     "PLUSHAUT", "HAUT",
        "HI",        "DAYHIGH",   "MASSIMO",   "MAXIMA",  "MáXIMA",  "HOOG",     "YüKSEK",
        "NAJWYZSZY", "NAJWYżSZY", "HöGST",     "MAXIMUM", "HøJESTE", "YLIN",     "MAXIM",
        "Макс",      "Максимум",  "最高",      "最高价",  "高",      "高値",     "고가"}},
      {PriceField::kLow,
       {"LOW",       "LOWPRICE", "PRICELOW", "PXLOW",   "LOWEST", "L",       "TIEF",
        "TAGESTIEF", "MIN",      "MINIMO",   "MíNIMO",  "MíN",    "PLUSBAS", "BAS",
        "LO",        "DAYLOW",   "MINIMA",   "MíNIMA",  "LAAG",   "DüşüK",   "NAJNIZSZY",
        "NAJNIżSZY", "LäGST",    "MINIMUM",  "LAVESTE", "ALIN",   "MINIM",   "Мин",
        "Минимум",   "最低",     "最低价",   "低",      "安値",   "저가"}},
      {PriceField::kClose,
       {"CLOSE",     "CLOSELAST",  "CLOSEPRICE", "PRICECLOSE", "CLOSING",  "CLOSINGPRICE",
        "LAST",      "LASTPRICE",  "PXLAST",     "C",          "SCHLUSS",  "SCHLUSSKURS",
        "SCHLUß",    "ZULETZT",    "LETZTER",    "CIERRE",     "CHIUSURA", "CLOTURE",
        "CLôTURE",   "CLOT",       "FECHAMENTO", "ULTIMO",     "úLTIMO",   "DERNIER",
        "SETTLE",    "SETTLEMENT", "PRICE",      "KURS",       "RATE",     "NAV",
        "VALUE",     "LATEST",     "LTP",        "ÚLTIMO",     "LAATSTE",  "ŞIMDI",
        "OSTATNIO",  "ZAMKNIECIE", "ZAMKNIęCIE", "SENASTE",    "ZáVěR",    "ZáRó",
        "LUKKEKURS", "PääTöS",     "INCHIDERE",  "Цена",       "Закрытие", "收盘",
        "收盘价",    "終値",       "종가"}},
      {PriceField::kAdjustedClose,
       {"ADJCLOSE", "ADJUSTEDCLOSE", "CLOSEADJ", "CLOSEADJUSTED", "ADJUSTEDCLOSINGPRICE",
        "ADJCLOSEPRICE", "ADJUSTED", "ADJ"}},
      {PriceField::kVolume,
       {"VOLUME",
        "VOL",
        "STUECKE",
        "STüCKE",
        "STUECK",
        "STüCK",
        "NUMBEROFSHARES",
        "TOTTRDQTY",
        "TRADEDQTY",
        "QTY",
        "QUANTITY",
        "SHARESTRADED",
        "NOOFSHARES",
        "TOTALVOLUME",
        "BASEVOLUME",
        "VOLUMEBASE",
        "TOTALTRADEQUANTITY",
        "TRADEDVOLUME",
        "V",
        "PXVOLUME",
        "REALVOLUME",
        "VOLUMEN",
        "VOLUMENE",
        "VOLUMES",
        "VOLUM",
        "HAC",
        "HACIM",
        "WOL",
        "WOLUMEN",
        "OBJEM",
        "Объём",
        "Объем",
        "成交量",
        "交易量",
        "出来高",
        "거래량"}},
      {PriceField::kTickVolume, {"TICKVOL", "TICKVOLUME", "TICKQTY", "TICKS"}},
      {PriceField::kUpVolume, {"UP", "UPVOLUME", "UPVOL", "UPTICKS"}},
      {PriceField::kDownVolume, {"DOWN", "DOWNVOLUME", "DOWNVOL", "DOWNTICKS"}},
      {PriceField::kOpenInterest, {"OPENINTEREST", "OPENINT", "OI"}},
      {PriceField::kTicker,
       {"TICKER", "SYMBOL", "SYM", "CODE", "INSTRUMENT", "SECURITY", "STOCK", "PAIR", "CONTRACT",
        "NAME"}},
      {PriceField::kPeriod, {"PER", "PERIOD", "TIMEFRAME", "INTERVAL", "TF"}},
  };
  return names;
}

bool IsWordByte(char c) {
  return (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || (c & 0x80) != 0;
}

// The columns of four prices whose names have a common part: "BidOpen", "AAPL.Open", "mid.o".
// Prefers bid prices, which charts usually show.
std::vector<NamedColumn> ColumnsWithCommonPart(const std::vector<std::string>& names) {
  static constexpr std::pair<PriceField, std::string_view> kLong[] = {
      {PriceField::kOpen, "OPEN"},
      {PriceField::kHigh, "HIGH"},
      {PriceField::kLow, "LOW"},
      {PriceField::kClose, "CLOSE"}};
  const auto place = [&](std::string_view before, std::string_view word, std::string_view after) {
    const std::string name = std::string(before) + std::string(word) + std::string(after);
    return static_cast<std::size_t>(std::ranges::find(names, name) - names.begin());
  };
  std::vector<NamedColumn> best;
  for (const std::size_t letters : {std::size_t{5}, std::size_t{1}}) {
    for (const std::string& name : names) {
      const std::string_view open = kLong[0].second.substr(0, letters);
      const std::size_t at = name.find(open);
      if (at == std::string::npos || name.size() == open.size()) continue;
      const std::string before = name.substr(0, at);
      const std::string after = name.substr(at + open.size());
      if (letters == 1 && (!after.empty() || before.empty())) continue;
      std::vector<NamedColumn> found;
      for (const auto& [field, word] : kLong) {
        const std::size_t column = place(before, word.substr(0, letters), after);
        if (column < names.size()) found.push_back({column, field});
      }
      if (found.size() != std::size(kLong)) continue;
      for (const auto& [field, word] : {std::pair(PriceField::kVolume, "VOLUME"),
                                        {PriceField::kAdjustedClose, "ADJUSTED"},
                                        {PriceField::kAdjustedClose, "ADJCLOSE"}}) {
        const std::size_t column = place(before, word, after);
        if (column < names.size()) found.push_back({column, field});
      }
      if (before == "BID") return found;
      if (best.empty()) best = found;
    }
  }
  return best;
}

}  // namespace

std::string PlainName(std::string_view title) {
  std::string name;
  std::string bracketed;
  int brackets = 0;
  for (const char c : UpperCased(title)) {
    if (c == '(' || c == '[') ++brackets;
    if (IsWordByte(c)) (brackets > 0 ? bracketed : name) += c;
    if ((c == ')' || c == ']') && brackets > 0) --brackets;
  }
  if (name.empty()) name = bracketed;
  // "1. open"
  const std::size_t digits = name.find_first_not_of("0123456789");
  return digits == std::string::npos ? name : name.substr(digits);
}

std::vector<NamedColumn> NamedColumns(std::span<const std::string> titles) {
  std::vector<std::string> names;
  std::ranges::transform(titles, std::back_inserter(names), PlainName);
  std::vector<NamedColumn> found;
  for (const Names& known : AllNames()) {
    for (const std::string_view name : known.names) {
      for (std::size_t i = 0; i < names.size(); ++i) {
        if (names[i] == name) found.push_back({i, known.field});
      }
    }
  }
  const bool has_close = std::ranges::any_of(
      found, [](const NamedColumn& column) { return column.field == PriceField::kClose; });
  if (!has_close) std::ranges::copy(ColumnsWithCommonPart(names), std::back_inserter(found));
  return found;
}

std::string_view FieldName(PriceField field) {
  static constexpr std::array<std::string_view, 15> kNames = {
      "ignored", "ticker",      "period",    "date",        "time",
      "open",    "high",        "low",       "close",       "adjusted close",
      "volume",  "tick volume", "up volume", "down volume", "open interest"};
  return kNames[static_cast<std::size_t>(field)];
}

}  // namespace velumar
