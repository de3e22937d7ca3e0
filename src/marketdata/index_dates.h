#pragma once

#include <string_view>

namespace velumar {

// Takes the first and last dates out of every record of the directory's index files, for a
// directory whose series have no bars yet: what is listed then tells of no bar to come. Files that
// are missing are passed over. Throws MetaLibError.
void ForgetSeriesEnds(std::string_view directory);

}  // namespace velumar
