// The samples of one signal in their file type.
#pragma once

#include "model/MinMax.h"
#include "support/LargePages.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <mutex>
#include <new>
#include <span>
#include <stdexcept>
#include <type_traits>
#include <vector>

namespace Tracelyn {

// Memory for samples that are about to be written: growing it writes nothing beforehand.
template <class T>
struct UninitializedAllocator : std::allocator<T> {
    T* allocate(size_t n) { return static_cast<T*>(support::NewLargeArray(n * sizeof(T))); }
    void deallocate(T* memory, size_t n) { support::DeleteLargeArray(memory, n * sizeof(T)); }
    // Elements that resize() adds keep whatever the memory held.
    void construct(T* at) { ::new (static_cast<void*>(at)) T; }
};

template <class T>
using UninitializedVector = std::vector<T, UninitializedAllocator<T>>;

// The samples of one signal, contiguous. A variable of the reader owns its source; the sets that show it
// borrow it. At most INT32_MAX samples. Several threads may use the const functions at the same time.
template <class T>
class CGraphDataTypedSource {
public:
    // What a sample reads as. Bytes read unsigned whatever the signedness of the type that stores them.
    using Sample = std::conditional_t<sizeof(T) == 1, uint8_t, T>;

    CGraphDataTypedSource() = default;
    CGraphDataTypedSource(const CGraphDataTypedSource&) = delete;
    CGraphDataTypedSource& operator=(const CGraphDataTypedSource&) = delete;
    virtual ~CGraphDataTypedSource() = default;

    // The sample as a floating value. An index beyond either end reads the nearest sample; an empty source
    // reads 0.
    virtual double GetValue(int index, int /*refIndex*/) const {
        return m_nCount == 0 ? 0.0 : GetSamples()[ClampIndex(index)];
    }

    int GetCount() const { return m_nCount; }

    // All samples. The span ends with the next change of the source.
    std::span<const Sample> GetSamples() const {
        return {reinterpret_cast<const Sample*>(m_Values.data()), static_cast<size_t>(m_nCount)};
    }

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

    // Counts n more samples and returns them for writing; until then they hold whatever the memory held.
    // Several threads may write disjoint parts of them, while nothing is asked of the source. The span ends
    // with the next change of the source. Throws std::length_error when the source would hold too many.
    std::span<T> Append(int n) {
        if (n < 0 || n > std::numeric_limits<int>::max() - m_nCount)
            throw std::length_error("too many samples");
        const auto old = static_cast<size_t>(m_nCount);
        const size_t count = old + static_cast<size_t>(n);
        if (m_Values.size() < count)
            m_Values.resize(count);
        m_nCount += n;
        return std::span(m_Values).subspan(old, static_cast<size_t>(n));
    }

    // Takes back the last n of the samples, of which nothing was asked yet. Gives memory back when much is
    // left.
    void RemoveLast(int n) {
        m_nCount -= std::min(n, m_nCount);
        const auto count = static_cast<size_t>(m_nCount);
        if (m_Values.size() - count > count / 4) {
            m_Values.resize(count);
            m_Values.shrink_to_fit();
        }
    }

    // The samples at first, first + step, ... as GetValue gives them, as many as `values` holds.
    void GetValues(int first, int step, std::span<double> values) const {
        if (m_nCount == 0) {
            std::ranges::fill(values, 0.0);
            return;
        }
        const auto samples = GetSamples();
        if (step == 1 && first >= 0 && static_cast<size_t>(first) + values.size() <= samples.size()) {
            std::ranges::copy(samples.subspan(static_cast<size_t>(first), values.size()), values.begin());
            return;
        }
        int64_t index = first;
        for (double& value : values) {
            value = samples[ClampIndex(index)];
            index += step;
        }
    }

    // Smallest and largest sample in [from, to), bit for bit as a loop over GetValue finds them. Builds the
    // index of what was added since the last scan.
    MinMax Scan(int from, int to) const {
        const auto start = static_cast<float>(GetValue(from, -1));
        MinMax found{start, start};
        if (m_nCount == 0 || from >= to)
            return found;
        BuildIndex();
        found.Widen(m_Index.Find(GetSamples(), ClampIndex(from), ClampIndex(int64_t{to} - 1) + 1));
        return found;
    }

    // Sums up the samples of each range [bounds[k], bounds[k + 1]) into summaries[k]. The bounds rise and lie
    // within 0 and the count; the summary of an empty range is left as it is.
    void Summarize(std::span<const int> bounds, std::span<SampleSummary> summaries) const {
        BuildIndex();
        const auto samples = GetSamples();
        const bool hasInfinity = PrepareFinite();
        // Where the ranges are long, most bounds are not in the processor's cache. It fetches some in
        // advance.
        constexpr size_t kAhead = 12;
        for (size_t k = 0; k + 1 < bounds.size(); ++k) {
            if (k + kAhead < bounds.size())
                __builtin_prefetch(samples.data() + bounds[k + kAhead]);
            const auto from = static_cast<size_t>(bounds[k]);
            const auto to = static_cast<size_t>(bounds[k + 1]);
            if (from >= to)
                continue;
            summaries[k] = {static_cast<float>(samples[from]), static_cast<float>(samples[to - 1]),
                            m_Index.Find(samples, from, to)};
            if constexpr (std::is_floating_point_v<Sample>) {
                if (hasInfinity)
                    summaries[k].finite = m_FiniteIndex.Find(samples, from, to);
            }
        }
    }

    // Prepares fast scans of the samples there are, which must all have been written and stay as they are.
    // Each source may be prepared by another thread.
    void BuildIndex() const { Complete(m_Index, m_nIndexed); }
    size_t GetIndexBytes() const { return m_Index.GetBytes() + m_FiniteIndex.GetBytes(); }

private:
    // Takes into the index what was added since the last call; `indexed` is the number of samples it has.
    // Threads that find nothing missing do not wait.
    template <class Index>
    void Complete(Index& index, std::atomic<int>& indexed) const {
        if (indexed.load(std::memory_order_acquire) == m_nCount)
            return;
        const std::lock_guard lock(m_IndexMutex);
        index.Extend(GetSamples());
        indexed.store(m_nCount, std::memory_order_release);
    }

    // Whether any sample is infinite. Builds the index of the finite ones then.
    bool PrepareFinite() const {
        if constexpr (std::is_floating_point_v<Sample>) {
            const MinMax all = m_Index.Find(GetSamples(), 0, GetSamples().size());
            if (all.HasValue() && (std::isinf(all.min) || std::isinf(all.max))) {
                Complete(m_FiniteIndex, m_nFiniteIndexed);
                return true;
            }
        }
        return false;
    }

    size_t ClampIndex(int64_t index) const {
        return static_cast<size_t>(std::clamp<int64_t>(index, 0, m_nCount - 1));
    }

    UninitializedVector<T> m_Values;
    int m_nCount = 0;
    mutable std::mutex m_IndexMutex;
    mutable CMinMaxIndex<Sample> m_Index;
    mutable std::atomic<int> m_nIndexed = 0;
    // Empty unless samples are infinite and were summed up.
    mutable CMinMaxIndex<Sample, 64, FiniteValues> m_FiniteIndex;
    mutable std::atomic<int> m_nFiniteIndexed = 0;
};

} // namespace Tracelyn
