// Which signals of a recording are measured, and when one of them switches.
#pragma once

#include <QString>

#include <optional>
#include <vector>

namespace Tracelyn {

class CGraphData;
class CGraphDataGroup;
class CGraphDataSet;

struct ShownSignal {
    const CGraphDataGroup* group;
    const CGraphDataSet* set;
};

// The signals that the graph or the console shows, in the order of the groups. Neither the axis nor reference
// lines are among them.
std::vector<ShownSignal> ShownSignals(const CGraphData& data);

// The first shown on/off signal of that name; null when there is none.
const CGraphDataSet* FindOnOffSignal(const CGraphData& data, const QString& name);

// The samples of the longest shown signal.
int SampleCount(const CGraphData& data);

// By how much the axis rises from sample to sample; 1 without an axis.
double AxisStep(const CGraphData& data);

// The first sample of an on/off signal, from this one on, that is on: where the signal switches on, or this
// one when it is on already. Nothing when it stays off. Fast however many samples there are.
std::optional<int> FindSwitchOn(const CGraphDataSet& set, int from);
// The same for off.
std::optional<int> FindSwitchOff(const CGraphDataSet& set, int from);

} // namespace Tracelyn
