// Ctrl+C for a program that ends its work in order: it removes what it has begun and leaves no files behind.
#pragma once

namespace support {

// From now on the first Ctrl+C only sets what IsInterrupted tells; the second one ends the program at once.
void CatchInterrupts();

bool IsInterrupted();

// Ends the program in the way in which Ctrl+C would have ended it, so that the caller's shell sees why.
[[noreturn]] void EndInterrupted();

} // namespace support
