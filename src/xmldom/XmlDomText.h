// A node of character data.
#pragma once

#include "xmldom/XmlDomNode.h"

namespace Tracelyn {

class CXmlDomText : public CXmlDomNode {
public:
    bool CanHold(int nodeType) const override;

    // The text as it stands in the document, not trimmed.
    virtual QString GetText() const;
};

} // namespace Tracelyn
