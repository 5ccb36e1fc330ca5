#include "reader/XmlVariable.h"

#include "model/GraphData.h"
#include "model/GraphDataVariants.h"

#include <array>
#include <utility>

namespace Tracelyn {

template <class T>
const CGraphDataTypedSource<T>* TypedData<T>::GetSource() {
    if (!m_pStore)
        m_pStore = std::make_unique<CXmlVariableSource<T>>();
    return &m_pStore->GetSource();
}

template <class T>
CGraphDataSet& TypedData<T>::CreateSet() {
    return GetOwner().template Make<CGraphDataTypedSet<T>>(GetDescription(), GetSource());
}

CGraphDataSet& BinaryData::CreateSet() {
    return GetOwner().Make<CGraphDataBinarySet>(GetDescription(), GetSource());
}

CTypedDataRegistry& CTypedDataRegistry::Instance() {
    static CTypedDataRegistry registry;
    return registry;
}

TypedDataBase& CTypedDataRegistry::Add(std::unique_ptr<TypedDataBase> variable) {
    m_Variables.push_back(std::move(variable));
    return *m_Variables.back();
}

namespace {

template <class Variable>
std::unique_ptr<TypedDataBase> MakeVariable(CGraphData& owner) {
    return std::make_unique<Variable>(owner);
}

struct TypeEntry {
    const char* name;
    std::unique_ptr<TypedDataBase> (*make)(CGraphData&);
};

constexpr std::array kTypes{
    TypeEntry{"Float", MakeVariable<TypedData<float>>},
    TypeEntry{"Short", MakeVariable<TypedData<int16_t>>},
    TypeEntry{"Long", MakeVariable<TypedData<int32_t>>},
    TypeEntry{"UShort", MakeVariable<TypedData<uint16_t>>},
    TypeEntry{"ULong", MakeVariable<TypedData<uint32_t>>},
    TypeEntry{"Byte", MakeVariable<TypedData<int8_t>>},
    TypeEntry{"UByte", MakeVariable<TypedData<uint8_t>>},
    TypeEntry{"Binary", MakeVariable<BinaryData>},
};

} // namespace

TypedDataBase* CreateVariable(const QString& typeName, CGraphData& owner, CTypedDataRegistry& registry) {
    for (const TypeEntry& type : kTypes) {
        if (typeName == QLatin1String(type.name))
            return &registry.Add(type.make(owner));
    }
    return nullptr;
}

} // namespace Tracelyn
