// Access levels: 0 shows what everyone may see, 1 to 3 show more of a file's signals.
#pragma once

#include <QString>

namespace Tracelyn {

// The level that an access code grants (1 to 3); 0 for any other text.
int LevelGrantedBy(const QString& code);

} // namespace Tracelyn
