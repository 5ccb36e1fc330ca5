// Reads an analysis document into the model and collects what is wrong with it.
#pragma once

#include "reader/AutomaticColors.h"
#include "reader/ReadResult.h"
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
    const std::vector<CResult>& GetResults() const { return m_Results; }

private:
    struct Limit {
        size_t most = 0;
        const char* what = nullptr;
        bool reported = false;
    };

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
    // Whether nothing more may be added; the first time that is a result, however many there are.
    bool IsFull(Limit& limit, size_t count);
    // Keeps the result, its detail as far as it is shown, or counts it when there are very many.
    bool Fail(ResultCode code, const QString& detail);
    void ReportFurtherResults();
    bool FindRequired(const CXmlDomElement& parent, const char* name, CXmlDomElement& child);
    void SetColorOf(CGraphDataSet& set, const TypedDataBase& variable);

    std::vector<CResult> m_Results;
    size_t m_nFurtherResults = 0;
    Limit m_VariableLimit{support::limits::kVariables, "variables"};
    Limit m_GroupLimit{support::limits::kGroups, "groups"};
    Limit m_SignalLimit{support::limits::kSets, "signals"};
    int64_t m_nValuesOfRow = 0; // of all lines
    std::vector<TypedDataBase*> m_Variables;
    // The first of each name. A QHash would end the program when memory runs out.
    std::map<QString, TypedDataBase*> m_VariablesByName;
    QString m_strAnalysisName;
    AutomaticColors m_Colors;
};

} // namespace Tracelyn
