#pragma once

#include <filesystem>
#include <functional>
#include <map>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "charthost/drawings/drawing.h"

namespace velumar {

// A security is known by its symbol and name: a multiplied series, "EURUSD x10000", is another one.
using SecurityKey = std::pair<std::string, std::string>;
using DrawingsBySecurity = std::map<SecurityKey, std::vector<Drawing>>;

// The message says what is wrong with the text.
class DrawingFileError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// The drawings as JSON. Whatever the text, it is either read as a whole or refused.
std::string DrawingsText(const DrawingsBySecurity& drawings);
DrawingsBySecurity ReadDrawings(std::string_view text);

// The drawings of a file; none if there is no such file. Throws FileError and DrawingFileError, the
// latter naming the file and what to do.
DrawingsBySecurity LoadDrawings(const std::filesystem::path& file);
// Replaces the drawings of one security in the file with what `change` makes of them; those of
// others, which another program may have changed, stay. A file that can't be read is left as it is:
// throws as LoadDrawings does.
using DrawingsChange = std::function<std::vector<Drawing>(std::vector<Drawing>)>;
void ChangeDrawings(const std::filesystem::path& file, const SecurityKey& security,
                    const DrawingsChange& change);

}  // namespace velumar
