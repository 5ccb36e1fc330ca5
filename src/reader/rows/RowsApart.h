// The shortcut for the sample rows: they stay in the file, and only the rest of the document is parsed.
#pragma once

#include "support/Progress.h"

#include <QString>

#include <memory>

namespace Tracelyn {

class CSampleText;
class CXmlDomDocument;

// Loads the document at the path, with the same outcome and error text as CXmlDomDocument::Load. When the
// text at the start of the root's first child named `element` is plain, that child comes out empty and `rows`
// is its text, read from the open file; otherwise `rows` is null and the text is in the document.
//
// A load that is asked to stop fails.
//
// Plain is what PlainText says, with something other than white space in it. To look whether a long text is
// plain takes a while, and whoever converts its rows looks at all of it anyway: with TextCheck::Later such a
// text may come unchecked, see CSampleText::IsChecked. If it turns out not to be plain, nothing that was read
// holds, and the document must be loaded with TextCheck::Now.
enum class TextCheck { Now, Later };
bool LoadWithRowsApart(const QString& path, const char* element, CXmlDomDocument& document,
                       std::unique_ptr<CSampleText>& rows, QString& error,
                       const support::Progress& progress = {}, TextCheck check = TextCheck::Now);

} // namespace Tracelyn
