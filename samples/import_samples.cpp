// Creates the sample directory at build time:
//   velumar_import_samples DIRECTORY CSV NAME [CSV NAME]...

#include <exception>
#include <iostream>
#include <span>

#include "base/paths.h"
#include "import/price_import.h"
#include "marketdata/index_cache.h"

int main(int argument_count, char** arguments) {
  const std::span<char*> given(arguments, static_cast<std::size_t>(argument_count));
  try {
    velumar::IndexCache cache;
    for (std::size_t i = 2; i + 1 < given.size(); i += 2) {
      velumar::ImportOptions options;
      options.remember = velumar::Remember::kNothing;
      options.name = given[i + 1];
      velumar::ImportFile(velumar::NativePath(given[i]), given[1], options, cache, nullptr);
    }
    return 0;
  } catch (const std::exception& error) {
    std::cerr << error.what() << '\n';
    return 1;
  }
}
