// The process-wide one-shot flag that the Open command raises and the next cursor movement takes.
#pragma once

namespace Tracelyn {

void SetFileJustOpened(bool opened);

// Reads and clears the flag.
bool TakeFileJustOpened();

} // namespace Tracelyn
