// The variables of an analysis file: each stands for one column of the sample rows and makes the sets that
// show it.
#pragma once

#include "model/GraphDataTypedSource.h"
#include "reader/rows/SampleRows.h"
#include "support/NumberText.h"

#include <QString>

#include <cstdint>
#include <memory>
#include <span>
#include <string_view>
#include <type_traits>
#include <vector>

namespace Tracelyn {

class CGraphData;
class CGraphDataSet;

// How raw values become shown values: (raw + offset) * factor, printed with `precision` decimals.
struct Unit {
    QString name;
    float offset = 0.0F;
    float factor = 1.0F;
    int precision = 0;
};

// The value store of one variable: the samples of its column.
template <class T>
class CXmlVariableSource {
public:
    // Converts one field of the column. No command calls it: a load converts whole rows into what Append
    // returns, with the same samples.
    void AddValue(std::string_view field) {
        if constexpr (std::is_floating_point_v<T>)
            m_Source.Add(SampleFromNumber<T>(support::ParseFloatField(field)));
        else
            m_Source.Add(SampleFromNumber<T>(support::ParseIntegerField(field)));
    }

    // See CGraphDataTypedSource.
    std::span<T> Append(int samples) { return m_Source.Append(samples); }
    void RemoveLast(int samples) { m_Source.RemoveLast(samples); }

    const CGraphDataTypedSource<T>& GetSource() const { return m_Source; }

private:
    CGraphDataTypedSource<T> m_Source;
};

class CXmlVariable {
public:
    CXmlVariable() = default;
    CXmlVariable(const CXmlVariable&) = delete;
    CXmlVariable& operator=(const CXmlVariable&) = delete;
    virtual ~CXmlVariable() = default;
};

// The part of a variable that does not depend on the type of its samples.
class TypedDataBase : public CXmlVariable {
public:
    explicit TypedDataBase(CGraphData& owner) : m_Owner(owner) {}

    // Makes a signal that shows the variable's samples. It is named by the description and owned by the
    // model; all signals of a variable share its samples.
    virtual CGraphDataSet& CreateSet() = 0;
    // Whether CreateSet was called. Otherwise the samples of the column are not kept.
    virtual bool HasStore() const = 0;
    // Appends a field of the variable's column as a sample; without a store it is dropped. No command calls
    // it: see CXmlVariableSource.
    virtual void AddValue(std::string_view field) = 0;
    // Appends that many samples and returns where to write them. Until all are written, the signals must not
    // be asked for values.
    virtual SampleColumn Append(int samples) = 0;
    virtual void RemoveLast(int samples) = 0;
    // Builds the min/max index now; otherwise the first question for extremes does.
    virtual void BuildIndex() = 0;

    void SetName(const QString& name) { m_strName = name; }
    void SetDescription(const QString& description) { m_strDescription = description; }
    void SetColor(const QString& color) { m_strColor = color; }
    void SetCode(int code) { m_nCode = code; }
    void AddUnit(const Unit& unit) { m_Units.push_back(unit); }

    const QString& GetName() const { return m_strName; }
    const QString& GetDescription() const { return m_strDescription; }
    // As written in the file; empty for an automatic colour.
    const QString& GetColor() const { return m_strColor; }
    // The access level that the variable requires.
    int GetCode() const { return m_nCode; }
    const std::vector<Unit>& GetUnits() const { return m_Units; }

protected:
    CGraphData& GetOwner() const { return m_Owner; }

private:
    CGraphData& m_Owner;
    QString m_strName;
    QString m_strDescription;
    QString m_strColor;
    int m_nCode = 0;
    std::vector<Unit> m_Units;
};

template <class T>
class TypedData : public TypedDataBase {
public:
    using TypedDataBase::TypedDataBase;

    CGraphDataSet& CreateSet() override;
    bool HasStore() const override { return m_pStore != nullptr; }
    void AddValue(std::string_view field) override {
        if (m_pStore)
            m_pStore->AddValue(field);
    }
    SampleColumn Append(int samples) override {
        return m_pStore ? SampleColumn(m_pStore->Append(samples)) : SampleColumn();
    }
    void RemoveLast(int samples) override {
        if (m_pStore)
            m_pStore->RemoveLast(samples);
    }
    void BuildIndex() override {
        if (m_pStore)
            m_pStore->GetSource().BuildIndex();
    }

protected:
    // The store's samples; the store is created when first asked for.
    const CGraphDataTypedSource<T>* GetSource();

private:
    std::unique_ptr<CXmlVariableSource<T>> m_pStore;
};

class BinaryData : public TypedData<uint8_t> {
public:
    using TypedData::TypedData;

    CGraphDataSet& CreateSet() override;
};

// Owns the variables of the file that was read last into it. The signals of the model point into it, so the
// model is cleared before the next reader uses it.
class CTypedDataRegistry {
public:
    // That of the process, whose file the window shows.
    static CTypedDataRegistry& Instance();

    TypedDataBase& Add(std::unique_ptr<TypedDataBase> variable);
    void Clear() { m_Variables.clear(); }

private:
    std::vector<std::unique_ptr<TypedDataBase>> m_Variables;
};

// Makes a variable for one of the eight type names ("Float", "Binary", ...) and adds it to the registry. Null
// for any other name.
TypedDataBase* CreateVariable(const QString& typeName, CGraphData& owner, CTypedDataRegistry& registry);

} // namespace Tracelyn
