// What the side panels show of a document: its counts and its headings.
#ifndef NOTES_TEXTSTATS_H
#define NOTES_TEXTSTATS_H

#include <QtCore/QString>
#include <QtCore/QVector>

class QTextDocument;

namespace TextStats {

struct Counts
{
    int words = 0;
    /// Characters as a reader counts them: line breaks left out, a surrogate pair once.
    int characters = 0;
    int lines = 0;
};

/// A line that starts with '#': "## Plan" is a heading of level 2 titled "Plan".
struct Heading
{
    int level = 1;
    QString title;
    int line = 0;   // 0-based, the document's block number
};

Counts count(const QTextDocument& document);
QVector<Heading> headings(const QTextDocument& document);

} // namespace TextStats

#endif // NOTES_TEXTSTATS_H
