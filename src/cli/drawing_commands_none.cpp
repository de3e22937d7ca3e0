#include "cli/commands.h"

namespace velumar {

const DrawingCommands* FindDrawingCommands() { return nullptr; }

}  // namespace velumar
