// The set that shows the samples of a typed source.
#pragma once

#include "model/GraphDataSet.h"
#include "model/GraphDataTypedSource.h"

namespace Tracelyn {

// Borrows its source, which must outlive it.
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
    void GetValues(int first, int step, std::span<double> values) const override {
        m_pSource->GetValues(first, step, values);
    }

protected:
    MinMax Scan(int from, int to) const override { return m_pSource->Scan(from, to); }

private:
    const CGraphDataTypedSource<T>* m_pSource;
};

} // namespace Tracelyn
