// A tone of the system's speaker.
#pragma once

namespace support {

// Sounds on Windows, for the given time, and returns true. False where the system has no such tone (or
// refuses it); the caller then uses its toolkit's bell.
bool Beep(int hertz, int milliseconds);

} // namespace support
