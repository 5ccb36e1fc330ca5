// Reads an analysis document into the model and collects what is wrong with it.
#pragma once

#include "reader/AutomaticColors.h"
#include "reader/Problems.h"
#include "reader/SignalFileReader.h"
#include "support/Limits.h"

#include <QString>

#include <map>
#include <vector>

namespace Tracelyn {

class CGraphDataGroup;
class CGraphDataSet;
class CXmlDomElement;
class TypedDataBase;
struct Unit;

// One reader serves one file. Constructing it deletes the variables of the reader before, samples included.
class CXmlReader : public CSignalFileReader {
public:
    using CResult = ReadResult;

    CXmlReader();

    void ReadAnalysis(CGraphData& data, const QString& path) override;
    QString GetAnalysisName() const override { return m_strAnalysisName; }

    // The problems, in the order found. Of very many the last one says how many more there were.
    const std::vector<CResult>& GetResults() const { return m_Problems.GetResults(); }

private:
    // The steps return false when reading must stop; they have added the reason to the results by then.
    void ReadDocument(CGraphData& data, const QString& path);
    // A null definition stands for the missing element.
    bool ReadDataDefinition(CGraphData& data, const CXmlDomElement* definition);
    bool ReadIndexSet(CGraphData& data, const CXmlDomElement& definition);
    bool ReadVariable(CGraphData& data, const CXmlDomElement& element);
    bool ReadGroups(CGraphData& data, const CXmlDomElement& groups);
    bool ReadGroup(CGraphData& data, const CXmlDomElement& element);
    bool ReadLine(CGraphDataGroup& group, const CXmlDomElement& element);
    bool ReadRefLine(CGraphData& data, CGraphDataGroup& group, const CXmlDomElement& element);

    Unit ReadUnit(const CXmlDomElement& element);
    // The attribute's text; of a text that is too long, the beginning and a result.
    QString ReadText(const CXmlDomElement& element, const char* attribute);
    // Adds the problem; always false.
    bool Fail(ResultCode code, const QString& detail);
    bool FindRequired(const CXmlDomElement& parent, const char* name, CXmlDomElement& child);
    void SetColorOf(CGraphDataSet& set, const TypedDataBase& variable);

    CProblems m_Problems;
    Cap m_VariableCap{support::limits::kVariables, "variables"};
    Cap m_GroupCap{support::limits::kGroups, "groups"};
    Cap m_SignalCap{support::limits::kSets, "signals"};
    int64_t m_nValuesOfRow = 0; // of all lines
    std::vector<TypedDataBase*> m_Variables;
    // The first of each name. A QHash would end the program when memory runs out.
    std::map<QString, TypedDataBase*> m_VariablesByName;
    QString m_strAnalysisName;
    AutomaticColors m_Colors;
};

} // namespace Tracelyn
