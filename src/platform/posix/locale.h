#pragma once

#include <string>
#include <string_view>

namespace velumar {

// Turns a date format of strftime into a pattern of d, M and y: "dd.MM.yyyy" for "%d.%m.%Y". Other
// text with letters is put in single quotes. Returns "M/d/yyyy" for a format that does not have
// day, month and year exactly once or can't be written as a pattern.
std::string PatternOfDateFormat(std::string_view format);

// The text between the fields of a pattern; "/" if it isn't the same between all of them.
std::string SeparatorOfPattern(std::string_view pattern);

}  // namespace velumar
