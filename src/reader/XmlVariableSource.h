// The value store of one variable: converts the text fields of its column and keeps the samples.
#pragma once

#include "model/GraphDataTypedSource.h"
#include "support/NumberText.h"

#include <span>
#include <string_view>
#include <type_traits>

namespace Tracelyn {

template <class T>
class CXmlVariableSource {
public:
    // Integers saturate at 32 bits and are then cut to the width of T; whatever is no number is 0.
    void AddValue(std::string_view field) {
        if constexpr (std::is_floating_point_v<T>)
            m_Source.Add(support::ParseFloatField(field));
        else
            m_Source.Add(static_cast<T>(support::ParseIntegerField(field)));
    }

    // See CGraphDataTypedSource.
    std::span<T> Append(int samples) { return m_Source.Append(samples); }
    void RemoveLast(int samples) { m_Source.RemoveLast(samples); }

    const CGraphDataTypedSource<T>& GetSource() const { return m_Source; }

private:
    CGraphDataTypedSource<T> m_Source;
};

} // namespace Tracelyn
