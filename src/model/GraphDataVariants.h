// The kinds of sets: sampled signals, on/off signals, fixed values and the index axis.
#pragma once

#include "model/GraphDataSet.h"
#include "model/GraphDataTypedSource.h"

namespace Tracelyn {

// A sampled signal. It borrows its source, which must outlive it.
template <class T>
class CGraphDataTypedSet : public CGraphDataSet {
public:
    CGraphDataTypedSet(CGraphData& root, const QString& name, const CGraphDataTypedSource<T>* pSource)
        : CGraphDataSet(root, name), m_pSource(pSource) {}

    double GetValue(int index, int refIndex) const override { return m_pSource->GetValue(index, refIndex); }
    double GetScaledValue(int index, int refIndex) const override {
        return static_cast<float>((m_pSource->GetValue(index, refIndex) + GetUnitOffset()) * GetUnitFactor());
    }
    bool IsBinary() const override { return false; }
    int GetCount() const override { return m_pSource->GetCount(); }
    const void* GetStore() const override { return m_pSource; }
    SampleSpan GetSamples() const override { return m_pSource->GetSamples(); }
    void GetValues(int first, int step, std::span<double> values) const override {
        m_pSource->GetValues(first, step, values);
    }
    void Summarize(std::span<const int> bounds, std::span<SampleSummary> summaries) const override {
        m_pSource->Summarize(bounds, summaries);
    }

protected:
    MinMax Scan(int from, int to) const override { return m_pSource->Scan(from, to); }

private:
    const CGraphDataTypedSource<T>* m_pSource;
};

// An on/off signal over bytes; any byte but 0 reads as on.
class CGraphDataBinarySet : public CGraphDataTypedSet<uint8_t> {
public:
    using CGraphDataTypedSet::CGraphDataTypedSet;

    bool IsBinary() const override { return true; }
};

// One value for every index. The value lives elsewhere and must outlive the set.
class CGraphDataFixedSet : public CGraphDataSet {
public:
    CGraphDataFixedSet(CGraphData& root, const QString& name, const float* pValue);

    double GetValue(int index, int refIndex) const override;
    double GetScaledValue(int index, int refIndex) const override;
    bool IsBinary() const override { return false; }
    void GetValues(int first, int step, std::span<double> values) const override;

protected:
    MinMax Scan(int from, int to) const override;

private:
    const float* m_pValue;
};

// A reference line: a fixed set that keeps its value itself.
class CGraphDataOwningFixedSet : public CGraphDataFixedSet {
public:
    CGraphDataOwningFixedSet(CGraphData& root, const QString& name);

    void SetValue(float value) { m_fValue = value; }

private:
    float m_fValue = 0.0F;
};

// The horizontal axis: its value is the index. With a reference index it measures from there, without the
// offset.
class CGraphDataIndexSet : public CGraphDataSet {
public:
    CGraphDataIndexSet(CGraphData& root, const QString& name);

    double GetValue(int index, int refIndex) const override;
    double GetScaledValue(int index, int refIndex) const override;
    bool IsBinary() const override { return false; }
    void GetValues(int first, int step, std::span<double> values) const override;

protected:
    MinMax Scan(int from, int to) const override;
};

} // namespace Tracelyn
