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

    // Names are UTF-8 and as written in the document, with their prefix. When the attribute is absent a
    // getter returns `def`. `found`, if given, says whether it is present.
    QString GetAttribute(const char* name, const QString& def = {}, bool* found = nullptr) const;
    // False for exactly "false" and "0", true for any other text.
    bool GetAttributeBool(const char* name, bool def = false, bool* found = nullptr) const;
    // Decimal, "0x" hexadecimal or leading-zero octal, saturating; def also when the text is not wholly a
    // number.
    int32_t GetAttributeInt(const char* name, int32_t def = 0, bool* found = nullptr) const;
    // def also when the text is not wholly a number.
    float GetAttributeFloat(const char* name, float def = 0.0F, bool* found = nullptr) const;

    // Whether the text is "true", in whatever case, or "1". Ready, but no command calls it.
    bool IsAttributeTrue(const char* name) const;
    // The text as UTF-8; empty when absent. Ready, but no command calls it, nor HasAttribute.
    std::string GetAttributeRaw(const char* name) const;
    bool HasAttribute(const char* name) const;

    // The text of the first child when that is a text node; empty otherwise. White space alone is skipped,
    // CDATA is no text node, and text behind a comment or an element is not looked for.
    QString GetText() const;
    // The same without a copy: a view that lives as long as the document.
    std::string_view GetTextUtf8() const;

    // Sets `element` to the first child element of that name. False when there is none; `element` then stays
    // as it was.
    bool GetChildByName(const char* name, CXmlDomElement& element) const;

private:
    std::optional<std::string> AttributeText(const char* name, bool* found) const;
};

} // namespace Tracelyn
