#include "timeduraton.h"

namespace NVL::Utitlity {

QString TimeDuraton::toString(int seconds)
{
    qint64 rest = seconds;
    const QString sign = rest < 0 ? QStringLiteral("-") : QString();
    if (rest < 0)
        rest = -rest;
    const qint64 days = rest / 86400;
    rest %= 86400;
    const QString clock = QStringLiteral("%1:%2:%3")
                              .arg(rest / 3600, 2, 10, QLatin1Char('0'))
                              .arg((rest % 3600) / 60, 2, 10, QLatin1Char('0'))
                              .arg(rest % 60, 2, 10, QLatin1Char('0'));
    if (days > 0)
        return sign + QStringLiteral("%1d %2").arg(days).arg(clock);
    return sign + clock;
}

} // namespace NVL::Utitlity
