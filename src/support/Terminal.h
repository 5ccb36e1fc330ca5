// Whether somebody watches a stream.
#pragma once

#include <cstdio>

namespace support {

bool IsTerminal(std::FILE* stream);

} // namespace support
