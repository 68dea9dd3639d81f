#include "transform.h"

#include <cmath>

namespace SHARED::functions::help::transform {

QString from_byte_to_norm(double bytes)
{
    static const char* const units[] = {"KB", "MB", "GB", "TB", "PB", "EB"};
    const QString sign = bytes < 0 ? QStringLiteral("-") : QString();
    double value = std::fabs(bytes);
    if (value < 1024.0)
        return sign + QStringLiteral("%1 bytes").arg(qint64(value));
    int unit = -1;
    while (value >= 1024.0 && unit < int(std::size(units)) - 1) {
        value /= 1024.0;
        ++unit;
    }
    return sign + QStringLiteral("%1 %2").arg(value, 0, 'f', 2).arg(QLatin1String(units[unit]));
}

} // namespace SHARED::functions::help::transform
