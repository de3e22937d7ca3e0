#include "base/text.h"
#include "marketdata/stored_text.h"

namespace velumar {

std::string TextFromFile(std::string_view bytes) { return Latin1ToUtf8(bytes); }

std::string TextForFile(std::string_view utf8) { return Utf8ToLatin1(utf8); }

}  // namespace velumar
