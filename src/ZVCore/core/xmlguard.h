#ifndef ZVCORE_XMLGUARD_H
#define ZVCORE_XMLGUARD_H

//
//  W A R N I N G
//  -------------
//
// This file is not part of the ZVCore API. It exists for the convenience of the
// implementation and may change from version to version without notice.
//

// The product's XML files (productInfo.xml, the link files) are edited by hand and read
// with QDomDocument, whose parser recurses once per nesting level and expands entities
// without a bound on their total: a file nested some 30,000 levels deep overflows the
// stack, and a few hundred kilobytes of entity references grow into gigabytes. Every
// DOM parse of such a file goes through here first.

#include <ZVCore/zvcore_export.h>

#include <QtCore/QByteArray>

class QDomDocument;

namespace ZVUIFramework {
namespace XmlGuard {

// Deeper than any product file needs; QDomDocument handles it with a few hundred
// kilobytes of stack, and in linear time.
constexpr int MaxDepth = 256;

// Whether \a bytes is a document the DOM parser may be given: elements nested at most
// MaxDepth levels, and no entity declarations (the product files need none; declared
// entities are what expansion attacks are made of). Well-formedness is left to the
// parser. The text walked is the one the parser reads, decoded by the byte order mark
// or the declared encoding. Runs in linear time; the decoded text is all it builds.
ZVCORE_AUTOTEST_EXPORT bool IsWithinLimits(const QByteArray& bytes);

// QDomDocument::setContent(bytes, false) for documents within the limits; false for the
// others, as for any document that does not parse.
ZVCORE_AUTOTEST_EXPORT bool Parse(QDomDocument& document, const QByteArray& bytes);

} // namespace XmlGuard
} // namespace ZVUIFramework

#endif // ZVCORE_XMLGUARD_H
