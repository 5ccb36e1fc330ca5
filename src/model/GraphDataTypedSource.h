// The samples of one signal in their file type.
#pragma once

#include "MinMax.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

// The samples of one signal, contiguous. A variable of the reader owns its source; the sets that show it
// borrow it. At most INT32_MAX samples.
template <class T>
class CGraphDataTypedSource {
public:
    CGraphDataTypedSource() = default;
    CGraphDataTypedSource(const CGraphDataTypedSource&) = delete;
    CGraphDataTypedSource& operator=(const CGraphDataTypedSource&) = delete;
    virtual ~CGraphDataTypedSource() = default;

    // The sample as a floating value. An index beyond either end reads the nearest sample; an empty source
    // reads 0.
    virtual double GetValue(int index, int /*refIndex*/) const {
        return m_nCount == 0 ? 0.0 : ToDouble(m_Values[ClampIndex(index)]);
    }

    int GetCount() const { return m_nCount; }

    // Makes room for n samples beforehand, never for fewer than there are; the count stays.
    void SetSize(int n) { m_Values.resize(static_cast<size_t>(std::max(n, m_nCount))); }

    void Add(T value) {
        const auto at = static_cast<size_t>(m_nCount);
        if (m_Values.size() < at + 1)
            m_Values.push_back(value);
        else
            m_Values[at] = value;
        ++m_nCount;
    }

    // Adds n samples at the end and returns them, to be written before anything is asked for.
    std::span<T> Append(int n) {
        SetSize(m_nCount + n);
        const auto from = static_cast<size_t>(m_nCount);
        m_nCount += n;
        return std::span(m_Values).subspan(from, static_cast<size_t>(n));
    }

    void RemoveLast(int n) { m_nCount -= n; }

    void BuildIndex() const { IndexBlocks(); }

    // The samples at first, first + step, ... as GetValue gives them, as many as `values` holds.
    void GetValues(int first, int step, std::span<double> values) const {
        if (m_nCount == 0) {
            std::ranges::fill(values, 0.0);
            return;
        }
        int64_t index = first;
        for (double& value : values) {
            value = ToDouble(m_Values[ClampIndex(index)]);
            index += step;
        }
    }

    // Smallest and largest sample in [from, to), bit for bit as a loop over GetValue finds them. Whole blocks
    // are looked at once, when a range first covers them.
    MinMax Scan(int from, int to) const {
        const auto start = static_cast<float>(GetValue(from, -1));
        MinMax found{start, start};
        if (m_nCount == 0 || from >= to)
            return found;
        size_t at = ClampIndex(from);
        const size_t end = ClampIndex(int64_t{to} - 1) + 1;
        IndexBlocks();
        while (at < end) {
            if (at % kBlock == 0 && at + kBlock <= end) {
                found.Widen(m_Blocks[at / kBlock]);
                at += kBlock;
            } else {
                const size_t stop = std::min(end, (at / kBlock + 1) * kBlock);
                WidenBySamples(found, at, stop);
                at = stop;
            }
        }
        return found;
    }

private:
    static constexpr size_t kBlock = 1024;

    // Bytes read unsigned whatever the signedness of the type that stores them.
    static double ToDouble(T value) {
        if constexpr (sizeof(T) == 1)
            return static_cast<double>(static_cast<uint8_t>(value));
        else
            return static_cast<double>(value);
    }

    size_t ClampIndex(int64_t index) const {
        return static_cast<size_t>(std::clamp<int64_t>(index, 0, m_nCount - 1));
    }

    void WidenBySamples(MinMax& found, size_t from, size_t to) const {
        for (size_t i = from; i < to; ++i)
            found.Widen(static_cast<float>(ToDouble(m_Values[i])));
    }

    void IndexBlocks() const {
        const size_t whole = static_cast<size_t>(m_nCount) / kBlock;
        while (m_Blocks.size() < whole) {
            MinMax block = MinMax::None();
            WidenBySamples(block, m_Blocks.size() * kBlock, (m_Blocks.size() + 1) * kBlock);
            m_Blocks.push_back(block);
        }
    }

    std::vector<T> m_Values;
    int m_nCount = 0;
    mutable std::vector<MinMax> m_Blocks;
};
