// What `info` prints: the loaded model and the problems found, as JSON.
#pragma once

#include <QByteArray>

namespace Tracelyn {

class CGraphData;
struct Analysis;

QByteArray InfoJson(const Analysis& analysis, const CGraphData& data);

} // namespace Tracelyn
