#pragma once

#include <QObject>
#include <QSharedPointer>
#include <QString>

#include "service/v2/notificationsubscriber.h"

namespace NVB::Info::Plan {
class PlanObject;
}

namespace NVB::Common::Communication::V2 {
class NotificationMessage;
}

namespace NVB::GUI::Progress {

// Follows the typed progress of one plan and offers it as one text, one
// progress line after another.
class ProgressItem : public QObject, public NVB::Common::Communication::V2::NotificationSubscriber
{
    Q_OBJECT

public:
    ProgressItem(QSharedPointer<NVB::Info::Plan::PlanObject> plan, QObject* parent = nullptr);

    QString text() const { return m_text; }
    int subType() const { return m_subType; }
    int percent() const { return m_percent; }

    bool handleNotificationEvent(NVB::Common::Communication::V2::NotificationEvent* event) override;

signals:
    void updated(const QString& text);

private:
    void onNotificationProgress(const QSharedPointer<NVB::Common::Communication::V2::NotificationMessage>& message);

    QSharedPointer<NVB::Info::Plan::PlanObject> m_plan;
    QString m_text;
    int m_subType = 0;
    int m_percent = -1;
};

} // namespace NVB::GUI::Progress
