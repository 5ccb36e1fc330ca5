#include "xmldom/XmlDomNodeIterator.h"

#include "support/Assertion.h"
#include "xmldom/XmlDomElement.h"
#include "xmldom/XmlDomText.h"
#include "xmldom/XmlNodeAccess.h"

#include <utility>

namespace Tracelyn {

using support::Assert;

CXmlDomNodeIterator::CXmlDomNodeIterator(std::shared_ptr<xmlDoc> document, xmlNode* first)
    : m_pDocument(std::move(document)), m_pCurrent(first) {}

int CXmlDomNodeIterator::GetNodeType() const {
    Assert(m_pCurrent != nullptr, "p!=0");
    return m_pCurrent->type;
}

void CXmlDomNodeIterator::GetElement(CXmlDomElement& element) const {
    GetNode(element);
}

void CXmlDomNodeIterator::GetText(CXmlDomText& text) const {
    GetNode(text);
}

void CXmlDomNodeIterator::GetNode(CXmlDomNode& node) const {
    Assert(m_pCurrent != nullptr, "p!=0");
    node.Attach(m_pDocument, m_pCurrent);
}

void CXmlDomNodeIterator::Next() {
    Assert(m_pCurrent != nullptr, "p!=0");
    m_pCurrent = SkipBlankText(m_pCurrent->next);
}

} // namespace Tracelyn
