// The nodes of a parsed document: any node, a node of character data, and the walk over a node's children.
// Elements have a header of their own.
#pragma once

#include <QString>

#include <memory>

// The names of libxml2's document and node, so that this folder's headers need none of its headers.
// NOLINTBEGIN(bugprone-reserved-identifier): the library's own names
struct _xmlDoc;
struct _xmlNode;
// NOLINTEND(bugprone-reserved-identifier)
using xmlDoc = _xmlDoc;
using xmlNode = _xmlNode;

namespace Tracelyn {

class CXmlDomElement;
class CXmlDomNodeIterator;

// Node types as the document object model numbers them.
inline constexpr int kXmlElementType = 1;
inline constexpr int kXmlTextType = 3;
inline constexpr int kXmlCDataType = 4;

// Holds one node, or none until Attach. It shares the document, so the node stays valid after the
// CXmlDomDocument is gone; copies are cheap. Asking one that holds no node stops the program.
class CXmlDomNode {
public:
    CXmlDomNode() = default;
    CXmlDomNode(const CXmlDomNode&) = default;
    CXmlDomNode(CXmlDomNode&&) = default;
    CXmlDomNode& operator=(const CXmlDomNode&) = default;
    CXmlDomNode& operator=(CXmlDomNode&&) = default;
    virtual ~CXmlDomNode() = default;

    // Replaces the held node. A node of a type that CanHold refuses stops the program.
    virtual void Attach(std::shared_ptr<xmlDoc> document, xmlNode* node);
    virtual bool CanHold(int nodeType) const;

    // An element's name as written, with its prefix; "#text", "#comment", "#cdata-section" for those.
    QString GetNodeName() const;
    // Sets the iterator to the first child.
    void GetChildNodes(CXmlDomNodeIterator& iterator) const;

protected:
    // The held node; stops the program when there is none.
    xmlNode* Node() const;
    const std::shared_ptr<xmlDoc>& Document() const { return m_pDocument; }

private:
    std::shared_ptr<xmlDoc> m_pDocument;
    xmlNode* m_pNode = nullptr;
};

// A node of character data. Ready, but no command reads one: the reader takes text from elements.
class CXmlDomText : public CXmlDomNode {
public:
    bool CanHold(int nodeType) const override;

    // The text as it stands in the document, not trimmed.
    virtual QString GetText() const;
};

// Walks the children of a node in document order. Text that is white space alone is not among them.
class CXmlDomNodeIterator {
public:
    CXmlDomNodeIterator() = default;
    CXmlDomNodeIterator(const CXmlDomNodeIterator&) = default;
    CXmlDomNodeIterator(CXmlDomNodeIterator&&) = default;
    CXmlDomNodeIterator& operator=(const CXmlDomNodeIterator&) = default;
    CXmlDomNodeIterator& operator=(CXmlDomNodeIterator&&) = default;
    virtual ~CXmlDomNodeIterator() = default;

    // False behind the last child, where every other call stops the program.
    bool HasCurrent() const { return m_pCurrent != nullptr; }
    // 1 element, 3 text, 4 CDATA, 7 processing instruction, 8 comment.
    int GetNodeType() const;
    void GetElement(CXmlDomElement& element) const;
    // Ready, but no command calls it.
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
