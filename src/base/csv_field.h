#pragma once

#include <string>

namespace velumar {

// A text as a field of a CSV line, in quotes if a character of it would end the field.
std::string CsvField(const std::string& text);

}  // namespace velumar
