// Answers questions for statistics, one after the other, without reading every sample of the range again.
#pragma once

#include "measure/Statistics.h"
#include "support/Progress.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <tuple>
#include <vector>

namespace Tracelyn {

class CGraphData;

// Summaries of whole blocks, of blocks of blocks and so on.
template <class Summary>
class CSummaryLevels {
public:
    explicit CSummaryLevels(size_t blocks) { m_Levels.front().resize(blocks); }

    Summary& Block(size_t block) { return m_Levels.front()[block]; }

    // To be called when all blocks are written.
    void BuildUpper() {
        for (size_t level = 1; level < m_Levels.size(); ++level) {
            const std::vector<Summary>& below = m_Levels[level - 1];
            m_Levels[level].resize(below.size() / kFanOut);
            for (size_t i = 0; i < m_Levels[level].size() * kFanOut; ++i)
                m_Levels[level][i / kFanOut].Add(below[i]);
        }
    }

    // Adds the summary of the blocks [from, to), which looks at a few of them at either end and at whole
    // blocks of blocks between them.
    void AddTo(Summary& summary, size_t from, size_t to, size_t level = 0) const {
        const size_t begin = (from + kFanOut - 1) / kFanOut * kFanOut;
        const size_t end = to / kFanOut * kFanOut;
        if (level + 1 == m_Levels.size() || begin >= end) {
            AddEach(summary, from, to, level);
            return;
        }
        AddEach(summary, from, begin, level);
        AddTo(summary, begin / kFanOut, end / kFanOut, level + 1);
        AddEach(summary, end, to, level);
    }

    size_t GetBytes() const {
        size_t bytes = 0;
        for (const auto& level : m_Levels)
            bytes += level.capacity() * sizeof(Summary);
        return bytes;
    }

private:
    static constexpr size_t kFanOut = 16;

    void AddEach(Summary& summary, size_t from, size_t to, size_t level) const {
        for (size_t i = from; i < to; ++i)
            summary.Add(m_Levels[level][i]);
    }

    std::array<std::vector<Summary>, 4> m_Levels;
};

// Serves one model, which must outlive it and stay as it is. Until a signal is prepared, a question about it
// reads every sample. Sets that show the same samples in the same unit share what is kept of them: some 80
// bytes for each kBlockSamples samples, 16 more for an on/off signal. Not for several threads.
class CStatisticsIndex {
public:
    // Borrows the model.
    explicit CStatisticsIndex(const CGraphData& data);
    CStatisticsIndex(const CStatisticsIndex&) = delete;
    CStatisticsIndex& operator=(const CStatisticsIndex&) = delete;
    ~CStatisticsIndex();

    // Prepares all shown signals that are not prepared yet, on all cores. False when it was asked to stop:
    // then none of them is.
    bool Prepare(const support::Progress& progress = {});

    // As the function of this name, within rounding. The set is one of the model.
    Statistics Measure(const CGraphDataSet& set, int from, int to) const;

    size_t GetBytes() const;

private:
    // Equal for sets whose scaled values are the same: the samples, and the bits of the unit.
    using Key = std::tuple<const void*, uint32_t, uint32_t>;
    struct Levels;

    static Key KeyOf(const CGraphDataSet& set);

    const CGraphData& m_Data;
    double m_fAxisStep;
    std::map<Key, std::unique_ptr<Levels>> m_Levels;
};

} // namespace Tracelyn
