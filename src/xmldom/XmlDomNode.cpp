#include "xmldom/XmlDomNode.h"

#include "support/Assertion.h"
#include "xmldom/XmlDomNodeIterator.h"
#include "xmldom/XmlNodeAccess.h"

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

} // namespace Tracelyn
