#pragma once

#include <map>
#include <string>
#include <string_view>

namespace velumar {

// Upper and lower case of a to z are one, in names as in a registry.
struct CaselessLess {
  using is_transparent = void;
  bool operator()(std::string_view left, std::string_view right) const;
};

using SectionEntries = std::map<std::string, std::string, CaselessLess>;
using Sections = std::map<std::string, SectionEntries, CaselessLess>;

// Sections with entries as text:
//
//   [Settings]
//   LastPath=C:\Prices\Daily
//
// A character that would break a line or a name stands as "%" and two hexadecimal digits, so any
// text comes back as it was. A person may edit the text too: empty lines and lines that begin with
// "#" are passed over, and a "%" without digits behind it is itself.
std::string FormatSections(const Sections& sections);

// Throws std::invalid_argument naming the first line that isn't of this form.
Sections ParseSections(std::string_view text);

}  // namespace velumar
