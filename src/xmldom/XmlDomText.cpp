#include "xmldom/XmlDomText.h"

#include "xmldom/XmlNodeAccess.h"

namespace Tracelyn {

bool CXmlDomText::CanHold(int nodeType) const {
    return nodeType == XmlDomTextType || nodeType == XmlDomCDataType;
}

QString CXmlDomText::GetText() const {
    return QString::fromUtf8(ViewOf(Node()->content));
}

} // namespace Tracelyn
