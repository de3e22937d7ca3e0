#pragma once

#include <stdexcept>

namespace velumar {

// A CSV file that can't come in as it stands, told as one sentence without the file's name: the
// line where there is one, the cell and what is wrong with it.
class CsvError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace velumar
