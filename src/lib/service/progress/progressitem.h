#pragma once

#include <QJsonObject>
#include <QSharedPointer>
#include <QString>

#include "service/progress/iprogressitem.h"

namespace NVB::System::Progress {

// A progress line as the engine sends it: a caption, a value text and an
// optional percentage (-1 when unknown). JSON keys: "name", "value",
// "percent".
class ProgressItem : public IProgressItem
{
public:
    ProgressItem(const QString& name, const QString& value, int percent = -1);

    // Null when a value has the wrong type.
    static QSharedPointer<ProgressItem> fromJson(const QJsonObject& object);

    QString name() const { return m_name; }
    QString value() const { return m_value; }
    int percent() const { return m_percent; }

    // "name: value", with " (n%)" behind when the percentage is known.
    QString toString() const override;
    QJsonObject toJson() const override;

private:
    QString m_name;
    QString m_value;
    int m_percent = -1;
};

} // namespace NVB::System::Progress
