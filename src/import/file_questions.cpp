#include "import/file_questions.h"

#include "base/number_text.h"
#include "import/wording.h"

namespace velumar {

ImportQuestion FormatQuestion(const FormatUndecided& open, const ImportOptions& options) {
  ImportQuestion question{.text = open.what(), .option = open.Option()};
  if (question.Kind() == "--decimal") {
    question.Add("decimal comma", "as in 1.234,5", options).decimal_comma = true;
    question.Add("decimal point", "as in 1,234.5", options).decimal_comma = false;
  } else {
    question.Add("day first", "ddmmyy", options).date_format = "%d%m%y";
    question.Add("month first", "mmddyy", options).date_format = "%m%d%y";
    question.Add("year first", "yymmdd", options).date_format = "%y%m%d";
  }
  return question;
}

ImportQuestion DateOrderQuestion(const FileFormat& format, const DateReadings& readings,
                                 const ImportOptions& options) {
  ImportQuestion question{.text = "The dates can be read in several orders of day, month and year.",
                          .option = "--date-order dmy"};
  const auto add = [&](DateOrder order, const std::string& text, const DateReadings::Days& days) {
    question.Add(text, DayText(days.first) + " to " + DayText(days.last), options).date_order =
        order;
  };
  add(DateOrder::kDayMonthYear, "day first", readings.day_first);
  if (format.month_may_be_first) {
    add(DateOrder::kMonthDayYear, "month first", readings.month_first);
    question.option += format.year_may_be_first ? ", mdy" : " or mdy";
  }
  if (format.year_may_be_first) {
    add(DateOrder::kYearMonthDay, "year first", readings.year_first);
    question.option += " or ymd";
  }
  return question;
}

ImportQuestion PricesQuestion(const AdjustedCloses& closes, const ImportOptions& options) {
  ImportQuestion question{.text = "The close and the adjusted close differ.",
                          .option = "--adjusted or --unadjusted"};
  const std::string day = "close of " + DayText(closes.differing->date) + ": ";
  const auto add = [&](Prices prices, const std::string& text, float close) {
    question.Add(text, day + ReadableNumberText(close), options).prices = prices;
  };
  add(Prices::kAsTraded, "prices as traded", closes.differing->close);
  add(Prices::kAdjusted, "adjusted prices", closes.differing_adjusted);
  return question;
}

}  // namespace velumar
