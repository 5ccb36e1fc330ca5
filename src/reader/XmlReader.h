// Reads an analysis document into the model and collects the problems.
#pragma once

#include "model/GraphDataSet.h"
#include "reader/Problems.h"
#include "reader/SignalFileReader.h"
#include "support/Limits.h"

#include <QString>

#include <cstddef>
#include <cstdint>
#include <map>
#include <vector>

namespace Tracelyn {

class CGraphDataGroup;
class CTypedDataRegistry;
class CXmlDomDocument;
class CXmlDomElement;
class TypedDataBase;
struct Unit;
enum class TextCheck;

// The colours that lines get when the file names none: one palette for on/off signals and one for all others.
class CAutomaticColors {
public:
    // Each group begins again with the first colours.
    void Restart() { *this = {}; }
    ColorRef NextOrdinary();
    ColorRef NextBinary();

private:
    size_t m_nOrdinary = 0;
    size_t m_nBinary = 0;
};

// Serves one file. Constructing a reader deletes the variables and samples that the registry has from the
// reader before it, so the model that shows those is cleared first. Readers with registries of their own may
// work at the same time, each on its thread.
class CXmlReader : public CSignalFileReader {
public:
    using CResult = ReadResult;

    // With the registry of the process.
    CXmlReader();
    // The variables that it reads go to the registry, which is borrowed.
    explicit CXmlReader(CTypedDataRegistry& registry);

    void ReadAnalysis(CGraphData& data, const QString& path) override;
    QString GetAnalysisName() const override { return m_Read.name; }

    // The problems in the order found. When there are more than limits::kMaxProblems, the last result says
    // how many are left out.
    const std::vector<CResult>& GetResults() const { return m_Read.problems.GetResults(); }

private:
    // What a reading of the document has come to.
    struct Reading {
        CProblems problems;
        Cap variableCap{support::limits::kMaxVariables, "variables"};
        Cap groupCap{support::limits::kMaxGroups, "groups"};
        Cap signalCap{support::limits::kMaxSignals, "signals"};
        bool isStopped = false;
        std::vector<TypedDataBase*> variables;
        // The first variable of each name. No QHash: it ends the program when memory runs out.
        std::map<QString, TypedDataBase*> variablesByName;
        QString name;
        CAutomaticColors colors;
    };

    // False when nothing of what was read holds, because rows that came unchecked were not what they seemed.
    bool ReadDocument(CGraphData& data, const QString& path, TextCheck check);
    // What stands before the rows of `block`, which it finds. False when a problem ends the reading.
    bool ReadUpToRows(CGraphData& data, const CXmlDomDocument& document, CXmlDomElement& block);
    // Each step adds its problems to the results and returns false when the problem ends the reading.
    // Null when the document has no such element.
    bool ReadDataDefinition(CGraphData& data, const CXmlDomElement* definition);
    bool ReadIndexSet(CGraphData& data, const CXmlDomElement& definition);
    bool ReadVariable(CGraphData& data, const CXmlDomElement& element);
    bool ReadGroups(CGraphData& data, const CXmlDomElement& groups);
    bool ReadGroup(CGraphData& data, const CXmlDomElement& element);
    bool ReadLine(CGraphDataGroup& group, const CXmlDomElement& element);
    bool ReadRefLine(CGraphData& data, CGraphDataGroup& group, const CXmlDomElement& element);

    Unit ReadUnit(const CXmlDomElement& element);
    // The attribute's text. A text longer than limits::kMaxNameLength is cut and is a problem.
    QString ReadText(const CXmlDomElement& element, const char* attribute);
    // Adds the problem; always false.
    bool Fail(ResultCode code, const QString& detail);
    // Whether the reading may go on; if it was asked to stop, adds the problem that says so.
    bool MayGoOn();
    // Calls visit(child, name) for every child element until it returns false or the reading is to stop;
    // whether all were visited.
    template <class Visitor>
    bool ForEachElement(const CXmlDomElement& parent, Visitor visit);
    bool FindRequired(const CXmlDomElement& parent, const char* name, CXmlDomElement& child);
    void SetColorOf(CGraphDataSet& set, const TypedDataBase& variable);

    CTypedDataRegistry& m_Registry;
    Reading m_Read;
    bool m_bFirst = true; // nothing was read yet
    // Reports the progress, which never falls, and notes when it asks to stop.
    support::Progress m_Asked;
    double m_fDone = 0;
};

} // namespace Tracelyn
