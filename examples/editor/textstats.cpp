#include "textstats.h"

#include <QtGui/QTextBlock>
#include <QtGui/QTextDocument>

namespace TextStats {

Counts count(const QTextDocument& document)
{
    Counts counts;
    // Never fewer than one: an empty document still has the line the cursor is on.
    counts.lines = document.blockCount();
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        const QString text = block.text();
        bool inWord = false;
        for (const QChar c : text) {
            if (!c.isLowSurrogate())
                ++counts.characters;
            // A surrogate pair is no space, so it continues or starts a word like a letter.
            const bool space = c.isSpace();
            if (!space && !inWord)
                ++counts.words;
            inWord = !space;
        }
    }
    return counts;
}

QVector<Heading> headings(const QTextDocument& document)
{
    QVector<Heading> found;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        const QString text = block.text();
        if (!text.startsWith(QLatin1Char('#')))
            continue;
        int level = 0;
        while (level < text.size() && text.at(level) == QLatin1Char('#'))
            ++level;
        const QString title = text.mid(level).trimmed();
        // A line of '#' alone is a ruler, not a heading.
        if (title.isEmpty())
            continue;
        found.append({level, title, block.blockNumber()});
    }
    return found;
}

} // namespace TextStats
