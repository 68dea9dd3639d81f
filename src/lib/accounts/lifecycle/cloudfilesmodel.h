#pragma once

#include <QMap>
#include <QSharedPointer>
#include <QUuid>
#include <QVariant>

#include "models/basefilesmodel.h"

namespace NVL::Cloud {
class IOperation;
}

namespace NVB::GUI {

// A bucket's (or container's) folders as a check tree: its top prefixes are
// the top rows, deeper ones listed through the cloud operations as they are
// opened, every page of a listing followed to its end. A node's real path is
// its prefix with the delimiter ("NVB_a/"); the bucket, the root, has none.
class CloudFilesModel : public BaseFilesModel
{
    Q_OBJECT

public:
    explicit CloudFilesModel(QObject* parent = nullptr);
    ~CloudFilesModel() override;

    // Lists the destination of the configuration (with its ContainerName)
    // from the top; drops what was shown before.
    void setCloudConfig(const QMap<QString, QVariant>& config);
    QMap<QString, QVariant> cloudConfig() const { return m_config; }
    QUuid storageId() const { return m_storageId; }

    bool load(const QStringList& paths, int depth) override;
    // Whether a listing is under way.
    bool isLoading() const { return !m_running.isEmpty(); }

public slots:
    // The account of that id in the shared storage connection model.
    virtual void onSetStorage(const QUuid& id);

signals:
    void error(QString text);
    // A listing of that path has ended (well or not).
    void loaded(QString path);

private:
    struct Running
    {
        QString path;
        QSharedPointer<NVL::Cloud::IOperation> operation;
        QList<QObject*> nodes;
    };
    void startPage(const QString& path, const QString& marker, QList<QObject*> nodes);
    void onPageFinished(NVL::Cloud::IOperation* operation);
    void dropRunning();

    QMap<QString, QVariant> m_config;
    QUuid m_storageId;
    QList<Running> m_running;
    bool m_rootRegistered = false;
};

} // namespace NVB::GUI
