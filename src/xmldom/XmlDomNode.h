// One node of a parsed document, or nothing yet. A wrapper shares the document, so its node stays valid after
// the CXmlDomDocument is gone; copies are cheap. Using an empty wrapper is a programming error.
#pragma once

#include "xmldom/XmlForward.h"

#include <QString>

#include <memory>

namespace Tracelyn {

class CXmlDomNodeIterator;

// Node types as the document object model numbers them.
inline constexpr int XmlDomElementType = 1;
inline constexpr int XmlDomTextType = 3;
inline constexpr int XmlDomCDataType = 4;

class CXmlDomNode {
public:
    CXmlDomNode() = default;
    CXmlDomNode(const CXmlDomNode&) = default;
    CXmlDomNode(CXmlDomNode&&) = default;
    CXmlDomNode& operator=(const CXmlDomNode&) = default;
    CXmlDomNode& operator=(CXmlDomNode&&) = default;
    virtual ~CXmlDomNode() = default;

    // Replaces the held node. A node of a type that this wrapper cannot hold is a programming error.
    virtual void Attach(std::shared_ptr<xmlDoc> document, xmlNode* node);
    virtual bool CanHold(int nodeType) const;

    // An element's name as written, with its prefix; "#text", "#comment", "#cdata-section" for those.
    QString GetNodeName() const;
    void GetChildNodes(CXmlDomNodeIterator& iterator) const;

protected:
    // The held node; stops the program when there is none.
    xmlNode* Node() const;
    const std::shared_ptr<xmlDoc>& Document() const { return m_pDocument; }

private:
    std::shared_ptr<xmlDoc> m_pDocument;
    xmlNode* m_pNode = nullptr;
};

} // namespace Tracelyn
