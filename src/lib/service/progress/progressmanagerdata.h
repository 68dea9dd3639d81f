#pragma once

#include <QJsonObject>
#include <QSharedPointer>
#include <QString>

namespace NVB::System::Progress {

// The totals of a running plan. JSON keys: "workerMode", "progress" (percent,
// -1 unknown), "elapsedMs", "speed" (bytes a second), "dataSize",
// "bytesSent", "totalFileCount", "uploadedFileCount", "failedFileCount".
class ProgressManagerData
{
public:
    // Null when a value has the wrong type; missing keys keep their defaults.
    static QSharedPointer<ProgressManagerData> fromJson(const QJsonObject& object);
    QJsonObject toJson() const;

    QString workerMode() const { return m_workerMode; }
    void setWorkerMode(const QString& value) { m_workerMode = value; }
    int progress() const { return m_progress; }
    void setProgress(int value) { m_progress = value; }
    qint64 elapsedMs() const { return m_elapsedMs; }
    void setElapsedMs(qint64 value) { m_elapsedMs = value; }
    qint64 speed() const { return m_speed; }
    void setSpeed(qint64 value) { m_speed = value; }
    qint64 dataSize() const { return m_dataSize; }
    void setDataSize(qint64 value) { m_dataSize = value; }
    qint64 bytesSent() const { return m_bytesSent; }
    void setBytesSent(qint64 value) { m_bytesSent = value; }
    qint64 totalFileCount() const { return m_totalFileCount; }
    void setTotalFileCount(qint64 value) { m_totalFileCount = value; }
    qint64 uploadedFileCount() const { return m_uploadedFileCount; }
    void setUploadedFileCount(qint64 value) { m_uploadedFileCount = value; }
    qint64 failedFileCount() const { return m_failedFileCount; }
    void setFailedFileCount(qint64 value) { m_failedFileCount = value; }

private:
    QString m_workerMode;
    int m_progress = -1;
    qint64 m_elapsedMs = 0;
    qint64 m_speed = 0;
    qint64 m_dataSize = 0;
    qint64 m_bytesSent = 0;
    qint64 m_totalFileCount = 0;
    qint64 m_uploadedFileCount = 0;
    qint64 m_failedFileCount = 0;
};

} // namespace NVB::System::Progress
