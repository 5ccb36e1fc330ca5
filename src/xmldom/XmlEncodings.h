// Prepares libxml2 once for the process. Adds the one encoding that it cannot read in every build:
// windows-1252.
#pragma once

namespace Tracelyn {

void PrepareXmlLibrary();

} // namespace Tracelyn
