// Walks the children of a node in document order. Text that is white space alone is not among them.
#pragma once

#include "xmldom/XmlForward.h"

#include <memory>

namespace Tracelyn {

class CXmlDomElement;
class CXmlDomNode;
class CXmlDomText;

class CXmlDomNodeIterator {
public:
    CXmlDomNodeIterator() = default;
    CXmlDomNodeIterator(const CXmlDomNodeIterator&) = default;
    CXmlDomNodeIterator(CXmlDomNodeIterator&&) = default;
    CXmlDomNodeIterator& operator=(const CXmlDomNodeIterator&) = default;
    CXmlDomNodeIterator& operator=(CXmlDomNodeIterator&&) = default;
    virtual ~CXmlDomNodeIterator() = default;

    // All but HasCurrent need a current node.
    bool HasCurrent() const { return m_pCurrent != nullptr; }
    // 1 element, 3 text, 4 CDATA, 7 processing instruction, 8 comment.
    int GetNodeType() const;
    void GetElement(CXmlDomElement& element) const;
    void GetText(CXmlDomText& text) const;
    void GetNode(CXmlDomNode& node) const;
    void Next();

private:
    friend class CXmlDomNode;
    CXmlDomNodeIterator(std::shared_ptr<xmlDoc> document, xmlNode* first);

    std::shared_ptr<xmlDoc> m_pDocument;
    xmlNode* m_pCurrent = nullptr;
};

} // namespace Tracelyn
