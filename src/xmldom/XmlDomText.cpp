#include "XmlDomText.h"

#include "XmlNodeAccess.h"

bool CXmlDomText::CanHold(int nodeType) const {
    return nodeType == XmlDomTextType || nodeType == XmlDomCDataType;
}

QString CXmlDomText::GetText() const {
    return QString::fromUtf8(ViewOf(Node()->content));
}
