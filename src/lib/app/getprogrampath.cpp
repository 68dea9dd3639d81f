#include "getprogrampath.h"

#include <QStringList>

namespace NVB::GUI {

QString getProgramPath(const QString& commandLine)
{
    // Blanks inside quotes are masked in a working copy so that splitting at
    // blanks keeps a quoted path in one piece; the length found there is then
    // cut from the original, which still has its blanks.
    QString working = commandLine;
    const QChar quote(QLatin1Char('"'));
    int position = 0;
    while (position < commandLine.size()) {
        const int open = commandLine.indexOf(quote, position);
        if (open < 0)
            break;
        const int close = commandLine.indexOf(quote, open + 1);
        if (close < 0)
            break;
        const int length = close - open;
        QString masked = commandLine.mid(open + 1, length);
        masked.replace(QLatin1Char(' '), QLatin1Char('_'));
        working.replace(open + 1, length, masked);
        position = close + 1;
    }

    const QStringList parts = working.split(QLatin1Char(' '), Qt::KeepEmptyParts);
    QString result = parts.isEmpty() ? commandLine : commandLine.left(parts.first().size());
    if (result.startsWith(quote))
        result.remove(0, 1);
    if (result.endsWith(quote))
        result.chop(1);
    return result;
}

} // namespace NVB::GUI
