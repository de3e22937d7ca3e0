#pragma once

namespace velumar {

// Ends this process at once, whatever runs; what was printed is out.
[[noreturn]] void EndProcessAtOnce(int code);

}  // namespace velumar
