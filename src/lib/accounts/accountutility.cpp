#include "accountutility.h"

#include <cstdlib>

#include <QHostInfo>
#include <QRegularExpression>

namespace NVB::GUI::Settings::Account {

QString AccountUtility::computerName()
{
    const QString name = QHostInfo::localHostName().trimmed();
    return name.isEmpty() ? QStringLiteral("computer") : name;
}

QString AccountUtility::prefixFilter(const QString& prefix)
{
    QString result = prefix;
    result.remove(QRegularExpression(QStringLiteral("[/:*?><|]")));
    return result;
}

QString AccountUtility::removeTrailingCharacterAfterSlash(const QString& path)
{
    QString result = path;
    while (result.size() > 1 && result.endsWith(QLatin1Char('/')))
        result.chop(1);
    return result;
}

QString AccountUtility::currentProfile()
{
    return QString::fromLocal8Bit(std::getenv("USER"));
}

} // namespace NVB::GUI::Settings::Account
