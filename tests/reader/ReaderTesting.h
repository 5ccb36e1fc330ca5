// What the tests of this folder share: a document around its variables, groups and rows.
#pragma once

#include "Testing.h"
#include "model/GraphData.h"
#include "reader/XmlReader.h"

inline QByteArray Document(const QByteArray& variables, const QByteArray& groups, const QByteArray& rows = "",
                           const QByteArray& unit = "<Unit Name='s' UnitOffset='-1.5'/>") {
    return "<Analysis Name='Bend 1'><DataDefinition><IndexSet Name='Time'>" + unit +
           "</IndexSet><VariablesDefinitions>" + variables +
           "</VariablesDefinitions></DataDefinition><Groups>" + groups + "</Groups><Data>" + rows +
           "</Data></Analysis>";
}
