#pragma once

#include <QByteArray>
#include <QObject>
#include <QSharedPointer>
#include <QUuid>

#include "service/v2/notificationdata.h"

namespace NVB::Common::Communication::V2 {

// One V2 notification: its type and its payload's raw bytes, read into a
// typed payload on demand.
class NotificationMessage : public QObject
{
    Q_OBJECT
public:
    using Data = NotificationData;

    explicit NotificationMessage(QObject* parent = nullptr);
    NotificationMessage(const QUuid& type, const QByteArray& bytes, QObject* parent = nullptr);

    QUuid type() const { return m_type; }
    QByteArray bytes() const { return m_bytes; }

    // Null when the bytes do not make a T.
    template<typename T> QSharedPointer<T> data() const { return T::from(m_bytes); }

    // Takes the type and bytes of a payload.
    void setData(const Data& data);

private:
    QUuid m_type;
    QByteArray m_bytes;
};

} // namespace NVB::Common::Communication::V2

Q_DECLARE_METATYPE(QSharedPointer<NVB::Common::Communication::V2::NotificationMessage>)
