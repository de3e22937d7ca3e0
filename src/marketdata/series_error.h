#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "marketdata/bar.h"
#include "marketdata/bar_layout.h"

namespace velumar {

// MetaLibError with a sentence for a trader; `file` is the name that the sentence begins with.
[[noreturn]] void ThrowNotOpen();
[[noreturn]] void ThrowNoSeriesSelected(std::string_view call);
[[noreturn]] void ThrowSeriesNotFound(std::string_view symbol, int interval,
                                      const std::filesystem::path& directory);
[[noreturn]] void ThrowNotStorable(std::string_view file, std::string_view symbol, const Bar& bar,
                                   BarField field);
[[noreturn]] void ThrowSeriesFull(std::string_view file, std::string_view symbol);
[[noreturn]] void ThrowNoColumns(std::string_view file, std::string_view symbol);
[[noreturn]] void ThrowInUse(const std::filesystem::path& directory);

}  // namespace velumar
