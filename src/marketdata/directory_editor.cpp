#include "marketdata/directory_editor.h"

#include "marketdata/metalib_error.h"

namespace velumar {

void StoreSecurity(std::string_view directory, const NewSecurity&, const std::vector<Bar>&,
                   IndexCache&) {
  throw MetaLibError(MetaLibError::kWriteFailed, std::string(directory) + ": not built yet");
}

}  // namespace velumar
