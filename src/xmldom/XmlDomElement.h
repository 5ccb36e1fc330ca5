// An element: its attributes with defaults, its text, its children by name.
#pragma once

#include "xmldom/XmlDomNode.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace Tracelyn {

class CXmlDomElement : public CXmlDomNode {
public:
    bool CanHold(int nodeType) const override;

    // Attribute names are UTF-8, as written in the document (with their prefix). Every getter gives def when
    // the attribute is absent and says in found whether it was present.
    QString GetAttribute(const char* name, const QString& def = {}, bool* found = nullptr) const;
    // False for exactly "false" and "0", true for any other text.
    bool GetAttributeBool(const char* name, bool def = false, bool* found = nullptr) const;
    // Decimal, "0x" hexadecimal or leading-zero octal, saturating; def also when the text is not wholly a
    // number.
    int32_t GetAttributeInt(const char* name, int32_t def = 0, bool* found = nullptr) const;
    // def also when the text is not wholly a number.
    float GetAttributeFloat(const char* name, float def = 0.0F, bool* found = nullptr) const;

    // "true" in any case, or "1".
    bool IsAttributeTrue(const char* name) const;
    // The text as UTF-8; empty when absent.
    std::string GetAttributeRaw(const char* name) const;
    bool HasAttribute(const char* name) const;

    // The first child's text when that child is a text node, else empty. White space alone and CDATA are no
    // text node here; text after a comment or an element is not seen.
    QString GetText() const;
    // The same without a copy: a view that lives as long as the document.
    std::string_view GetTextUtf8() const;

    // The first child element of that name; false, and element as it was, when there is none.
    bool GetChildByName(const char* name, CXmlDomElement& element) const;

private:
    std::optional<std::string> AttributeText(const char* name, bool* found) const;
};

} // namespace Tracelyn
