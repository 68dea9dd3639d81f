#pragma once

#include <QList>
#include <QObject>
#include <QSharedPointer>
#include <QString>
#include <QUuid>

class QWidget;

namespace NVB::Info::Repository {
class Generation;
}

namespace NVB::Console {

// Behind "Delete backup data...": asks the engine for the chosen plan's
// generations on its storage, lets the user pick one when there are several,
// and opens the deletion dialog for it.
class BackupDataDeleter : public QObject
{
    Q_OBJECT

public:
    explicit BackupDataDeleter(QWidget* window);

    void start(const QUuid& connectionId, const QUuid& planId, const QString& planName);

signals:
    // The dialog closed; `deleted` when the engine reported the data gone.
    void finished(bool deleted);

private slots:
    void onGenerations();

private:
    void offer(QList<QSharedPointer<NVB::Info::Repository::Generation>> generations);

    QWidget* m_window;
    QUuid m_connectionId;
    QUuid m_planId;
    QString m_planName;
    bool m_busy = false;
};

} // namespace NVB::Console
