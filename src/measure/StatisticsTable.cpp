#include "measure/StatisticsTable.h"

#include "model/GraphDataGroup.h"

namespace Tracelyn {

namespace {

// The sample of a figure, or that there is none.
Cell SampleCell(int sample) {
    return sample < 0 ? Cell(Statistics::kNone) : Cell(int64_t{sample});
}

} // namespace

TableLine StatisticsLine(const QString& file, const ShownSignal& signal, const Statistics& figures) {
    TableLine line{file,
                   signal.group->m_strName,
                   signal.set->GetName(),
                   signal.set->GetUnit(),
                   int64_t{figures.from},
                   int64_t{figures.to},
                   figures.count,
                   figures.first,
                   figures.last,
                   figures.difference,
                   figures.min,
                   SampleCell(figures.minAt),
                   figures.max,
                   SampleCell(figures.maxAt),
                   figures.mean,
                   figures.deviation,
                   figures.slope};
    if (const auto& switching = figures.switching)
        line.insert(line.end(),
                    {switching->switchedOn, switching->switchedOff, switching->timeOn, switching->share});
    line.resize(kStatisticsColumns.size(), NoFigure());
    return line;
}

} // namespace Tracelyn
