#pragma once

#include <QMap>
#include <QObject>
#include <QSharedPointer>
#include <QStringList>
#include <QUuid>
#include <QVariant>

namespace NVL::Cloud {
class IOperation;
}

namespace NVB::Operation {

// Finds the backup prefixes already present in a destination: the folders at
// its root named <root prefix><backup prefix> ("NVB_" + computer name), and
// answers the backup prefixes without the root prefix, sorted. Pages through
// the listing until the end.
class GetPrefixOperation : public QObject
{
    Q_OBJECT

public:
    GetPrefixOperation(const QMap<QString, QVariant>& config, const QString& rootPrefix, QObject* parent = nullptr);
    ~GetPrefixOperation() override;

    QUuid id() const { return m_id; }
    bool isRunning() const { return !m_operation.isNull(); }

    void exec();
    // Stops waiting; neither signal comes afterwards.
    void cancel();

signals:
    void finished(QUuid id, QStringList prefixes);
    void error(QUuid id, int code, QString message);

private slots:
    void onListingFinished();

private:
    void requestPage(const QString& marker);
    void fail(int code, const QString& message);

    QUuid m_id;
    QMap<QString, QVariant> m_config;
    QString m_rootPrefix;
    QStringList m_prefixes;
    QString m_lastMarker;
    QSharedPointer<NVL::Cloud::IOperation> m_operation;
};

} // namespace NVB::Operation
