#include "xmldom/XmlDomElement.h"

#include "support/Assertion.h"
#include "support/NumberText.h"
#include "xmldom/LibXml.h"

namespace Tracelyn {

using support::Assert;

namespace {

const xmlAttr* FindAttribute(const xmlNode* element, const char* name) {
    Assert(name != nullptr, "bstrAttributeName != NULL");
    const xmlAttr* attribute = element->properties;
    while (attribute != nullptr && !HasName(attribute->ns, attribute->name, name))
        attribute = attribute->next;
    return attribute;
}

std::string TextOf(const xmlAttr& attribute) {
    const xmlNode* const child = attribute.children;
    if (child == nullptr)
        return {};
    if (child->type == XML_TEXT_NODE && child->next == nullptr)
        return std::string(ViewOf(child->content));
    const std::unique_ptr<xmlChar, xmlFreeFunc> joined(xmlNodeListGetString(attribute.doc, child, 1),
                                                       xmlFree);
    return std::string(ViewOf(joined.get()));
}

} // namespace

bool CXmlDomElement::CanHold(int nodeType) const {
    return nodeType == kXmlElementType;
}

std::optional<std::string> CXmlDomElement::AttributeText(const char* name, bool* found) const {
    const xmlAttr* const attribute = FindAttribute(Node(), name);
    if (found != nullptr)
        *found = attribute != nullptr;
    return attribute == nullptr ? std::nullopt : std::optional(TextOf(*attribute));
}

QString CXmlDomElement::GetAttribute(const char* name, const QString& def, bool* found) const {
    const std::optional<std::string> text = AttributeText(name, found);
    return text ? QString::fromStdString(*text) : def;
}

bool CXmlDomElement::GetAttributeBool(const char* name, bool def, bool* found) const {
    const std::optional<std::string> text = AttributeText(name, found);
    return text ? *text != "false" && *text != "0" : def;
}

int32_t CXmlDomElement::GetAttributeInt(const char* name, int32_t def, bool* found) const {
    const std::optional<std::string> text = AttributeText(name, found);
    return text ? support::ParseIntegerAttribute(*text).value_or(def) : def;
}

float CXmlDomElement::GetAttributeFloat(const char* name, float def, bool* found) const {
    const std::optional<std::string> text = AttributeText(name, found);
    return text ? support::ParseFloatAttribute(*text).value_or(def) : def;
}

bool CXmlDomElement::IsAttributeTrue(const char* name) const {
    const QString text = GetAttribute(name).toLower();
    return text == QLatin1String("true") || text == QLatin1String("1");
}

std::string CXmlDomElement::GetAttributeRaw(const char* name) const {
    return AttributeText(name, nullptr).value_or(std::string());
}

bool CXmlDomElement::HasAttribute(const char* name) const {
    return FindAttribute(Node(), name) != nullptr;
}

QString CXmlDomElement::GetText() const {
    return QString::fromUtf8(GetTextUtf8());
}

std::string_view CXmlDomElement::GetTextUtf8() const {
    const xmlNode* const first = FirstChild(Node());
    return first != nullptr && first->type == XML_TEXT_NODE ? ViewOf(first->content) : std::string_view();
}

bool CXmlDomElement::GetChildByName(const char* name, CXmlDomElement& element) const {
    for (xmlNode* child = FirstChild(Node()); child != nullptr; child = child->next) {
        if (child->type == XML_ELEMENT_NODE && HasName(child->ns, child->name, name)) {
            element.Attach(Document(), child);
            return true;
        }
    }
    return false;
}

} // namespace Tracelyn
