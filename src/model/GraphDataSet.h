// One set of the model: a sampled signal, a reference line or the index axis, read as floating values.
#pragma once

#include "model/MinMax.h"

#include <QString>

#include <cstdint>
#include <mutex>
#include <span>
#include <variant>

namespace Tracelyn {

class CGraphData;

// Where a group or a set is shown. The four values are compared literally; they are no bit mask.
enum class DisplayType : int32_t { None = 0, Graph = 1, Console = 2, Both = 3 };

constexpr bool IsShownInGraph(DisplayType type) {
    return type == DisplayType::Graph || type == DisplayType::Both;
}

constexpr bool IsShownInConsole(DisplayType type) {
    return type == DisplayType::Console || type == DisplayType::Both;
}

// Colours are 0x00BBGGRR.
using ColorRef = uint32_t;

// Stored samples as they are in memory, in file order, one of: none, or those of a file type ("Float",
// "Short", "Long", "UShort", "ULong", and both kinds of bytes, which read unsigned).
using SampleSpan =
    std::variant<std::monostate, std::span<const float>, std::span<const int16_t>, std::span<const int32_t>,
                 std::span<const uint16_t>, std::span<const uint32_t>, std::span<const uint8_t>>;

// "No reference index" for GetValue and GetScaledValue.
inline constexpr int kNoReference = -1;

// Abstract. A set registers itself in its root while it is constructed; the root owns it from then on, so
// sets are made with CGraphData::Make. Constructors of derived classes must not throw after the base is
// built. Several threads may use the const functions of a set at the same time while nobody changes it or
// its samples.
class CGraphDataSet {
public:
    CGraphDataSet(const CGraphDataSet&) = delete;
    CGraphDataSet& operator=(const CGraphDataSet&) = delete;
    virtual ~CGraphDataSet() = default;

    virtual void SetProperties(const QString& name, const QString& unit, float unitOffset, float unitFactor,
                               int precision);
    virtual void SetUnit(const QString& unit, float unitOffset, float unitFactor, int precision);

    // The raw value. Every index is allowed; only the index set looks at refIndex.
    virtual double GetValue(int index, int refIndex) const = 0;
    // (raw value + unit offset) * unit factor, rounded to 32 bits.
    virtual double GetScaledValue(int index, int refIndex) const = 0;
    // True for on/off signals, which are drawn as lanes.
    virtual bool IsBinary() const = 0;
    virtual int GetCount() const { return 1; }
    // Tells whose samples the set shows: the same for sets that show the same ones. Null when none are
    // stored.
    virtual const void* GetStore() const { return nullptr; }
    // All samples that the set shows, GetCount() of them, not copied: the span ends when samples are added
    // and with the samples' owner. GetValue gives the same numbers. None for a set that shows no stored
    // samples: the axis and reference lines. For one type: std::get_if<std::span<const float>>(&samples).
    virtual SampleSpan GetSamples() const { return {}; }
    virtual float GetUnitFactor() const { return m_fUnitFactor; }
    virtual float GetUnitOffset() const { return m_fUnitOffset; }

    // Raw values at first, first + step, ... without a reference, as many as `values` holds; the same numbers
    // as GetValue gives, in one call.
    virtual void GetValues(int first, int step, std::span<double> values) const;
    // Sums up the raw values of each range [bounds[k], bounds[k + 1]) into summaries[k]. The bounds rise and
    // lie within 0 and the count; the summary of an empty range is left as it is.
    virtual void Summarize(std::span<const int> bounds, std::span<SampleSummary> summaries) const;
    // Scaled values at first, first + 1, ...; the same numbers as GetScaledValue gives without a reference.
    void GetScaledValues(int first, std::span<float> values) const;

    // Everything but the name back to its default, with a random colour.
    void Reset();

    // Extremes of the raw values in [from, to); the value at `from` is read even when the range is empty. The
    // last answer is kept by its pair of indices and is not forgotten when values change.
    MinMax GetMinMax(int from, int to) const;
    void GetMinMax(int from, int to, float& min, float& max) const;

    bool IsDisplayedAsGraph() const { return IsShownInGraph(m_nDisplayType); }
    bool IsDisplayedInConsole() const { return IsShownInConsole(m_nDisplayType); }

    const QString& GetName() const { return m_strName; }
    void SetName(const QString& name) { m_strName = name; }
    const QString& GetUnit() const { return m_strUnit; }
    ColorRef GetColor() const { return m_crColor; }
    void SetColor(ColorRef color) { m_crColor = color; }
    // Decimals of a printed value, as the file gives it: it may be negative or absurdly large.
    int GetPrecision() const { return m_nPrecision; }
    void SetPrecision(int precision) { m_nPrecision = precision; }
    DisplayType GetDisplayType() const { return m_nDisplayType; }
    void SetDisplayType(DisplayType type) { m_nDisplayType = type; }
    bool IsIgnoredForVerticalAutoScaling() const { return m_bIgnoreForVerticalAutoScaling; }
    void SetIgnoredForVerticalAutoScaling(bool ignore) { m_bIgnoreForVerticalAutoScaling = ignore; }

protected:
    explicit CGraphDataSet(CGraphData& root);
    CGraphDataSet(CGraphData& root, const QString& name);

    // Extremes of [from, to) as the plain loop over GetValue finds them; sets with stored samples know better
    // ways.
    virtual MinMax Scan(int from, int to) const;

private:
    QString m_strName;
    QString m_strUnit;
    float m_fUnitFactor = 1.0F;
    float m_fUnitOffset = 0.0F;
    int m_nPrecision = 6;
    ColorRef m_crColor = 0;
    bool m_bIgnoreForVerticalAutoScaling = false;
    DisplayType m_nDisplayType = DisplayType::Both;
    mutable std::mutex m_CacheMutex;
    mutable int m_nCacheFrom = 0;
    mutable int m_nCacheTo = 0;
    mutable float m_fCacheMin = 0.0F;
    mutable float m_fCacheMax = 0.0F;
};

} // namespace Tracelyn
