#include "rebranding.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonParseError>

#include "core/apppath.h"
#include "core/nvldebug.h"

namespace NVB::Defines {

namespace {
const QString BuiltIn = QStringLiteral(":/nvb/stores/rebranding.json");
}

Rebranding* Rebranding::instance()
{
    static Rebranding rebranding([] {
        const QString own = qEnvironmentVariable("NVB_REBRANDING_FILE");
        return own.isEmpty() ? AppPath::to().share() + QStringLiteral("/rebranding.json") : own;
    }());
    return &rebranding;
}

Rebranding::Rebranding(const QString& filePath)
    : m_values(readFile(BuiltIn, false))
{
    const QVariantMap own = readFile(filePath, true);
    for (auto it = own.cbegin(); it != own.cend(); ++it)
        m_values.insert(it.key(), it.value());
}

QVariant Rebranding::value(const QString& key) const
{
    return m_values.value(key);
}

QVariantMap Rebranding::readFile(const QString& filePath, bool quietIfMissing)
{
    QFile file(filePath);
    if (!file.open(QIODevice::ReadOnly)) {
        if (!quietIfMissing || file.exists()) {
            NVL::NvlDebug(QStringLiteral("NVB")).warning()
                << QStringLiteral("Cannot read rebranding values from %1: %2").arg(filePath, file.errorString());
        }
        return {};
    }
    QJsonParseError error{};
    const QJsonDocument document = QJsonDocument::fromJson(file.readAll(), &error);
    if (!document.isObject()) {
        NVL::NvlDebug(QStringLiteral("NVB")).warning()
            << QStringLiteral("Rebranding file %1 is not a JSON object (%2); using the built-in values")
                   .arg(filePath, error.errorString());
        return {};
    }
    return document.object().toVariantMap();
}

} // namespace NVB::Defines
