#include "xmldom/XmlDomNode.h"

#include "support/Assertion.h"
#include "xmldom/LibXml.h"
#include "xmldom/XmlDomElement.h"

#include <utility>

namespace Tracelyn {

using support::Assert;

void CXmlDomNode::Attach(std::shared_ptr<xmlDoc> document, xmlNode* node) {
    Assert(node == nullptr || CanHold(node->type), "SUCCEEDED(hr)");
    m_pDocument = std::move(document);
    m_pNode = node;
}

bool CXmlDomNode::CanHold(int /*nodeType*/) const {
    return true;
}

QString CXmlDomNode::GetNodeName() const {
    const xmlNode* const node = Node();
    switch (node->type) {
    case XML_TEXT_NODE:
        return QStringLiteral("#text");
    case XML_CDATA_SECTION_NODE:
        return QStringLiteral("#cdata-section");
    case XML_COMMENT_NODE:
        return QStringLiteral("#comment");
    case XML_ELEMENT_NODE:
        return QualifiedName(node->ns, node->name);
    default:
        return QString::fromUtf8(ViewOf(node->name));
    }
}

void CXmlDomNode::GetChildNodes(CXmlDomNodeIterator& iterator) const {
    const xmlNode* const node = Node();
    // Only an element's children are nodes of the tree's own kind.
    iterator = CXmlDomNodeIterator(m_pDocument, node->type == XML_ELEMENT_NODE ? FirstChild(node) : nullptr);
}

xmlNode* CXmlDomNode::Node() const {
    Assert(m_pNode != nullptr, "p!=0");
    return m_pNode;
}

bool CXmlDomText::CanHold(int nodeType) const {
    return nodeType == kXmlTextType || nodeType == kXmlCDataType;
}

QString CXmlDomText::GetText() const {
    return QString::fromUtf8(ViewOf(Node()->content));
}

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
