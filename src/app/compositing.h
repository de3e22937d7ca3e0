#pragma once

namespace velumar {

// True when windows are blended on the screen, so that opacity and soft corners show.
bool CompositingActive();

}  // namespace velumar
