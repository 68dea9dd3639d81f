#include "progressitem.h"

namespace NVB::System::Progress {

ProgressItem::ProgressItem(const QString& name, const QString& value, int percent)
    : m_name(name)
    , m_value(value)
    , m_percent(percent)
{ }

QSharedPointer<ProgressItem> ProgressItem::fromJson(const QJsonObject& object)
{
    const QJsonValue name = object.value(QStringLiteral("name"));
    const QJsonValue value = object.value(QStringLiteral("value"));
    const QJsonValue percent = object.value(QStringLiteral("percent"));
    if (!(name.isUndefined() || name.isString()) || !(value.isUndefined() || value.isString())
        || !(percent.isUndefined() || percent.isDouble()))
        return {};
    return QSharedPointer<ProgressItem>::create(name.toString(), value.toString(), percent.toInt(-1));
}

QString ProgressItem::toString() const
{
    QString text = m_value.isEmpty() ? m_name : QStringLiteral("%1: %2").arg(m_name, m_value);
    if (m_percent >= 0)
        text += QStringLiteral(" (%1%)").arg(m_percent);
    return text;
}

QJsonObject ProgressItem::toJson() const
{
    return {
        {QStringLiteral("name"), m_name}, {QStringLiteral("value"), m_value}, {QStringLiteral("percent"), m_percent}};
}

} // namespace NVB::System::Progress
