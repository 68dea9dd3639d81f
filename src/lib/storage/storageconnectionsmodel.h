#pragma once

#include <QIcon>
#include <QJsonDocument>
#include <QMap>
#include <QUuid>
#include <QVariant>
#include <QVector>

#include "models/basemodel.h"

namespace NVB::GUI {

// The flat table of saved storage accounts, one row per connection of the
// engine's "StorageGetConnection" reply. It follows the engine's storage
// notifications by itself; rows go only when the engine says an account is
// gone, never because a view asked to remove one.
class StorageConnectionsModel : public BaseModel
{
    Q_OBJECT

public:
    explicit StorageConnectionsModel(QObject* parent = nullptr);
    ~StorageConnectionsModel() override;

    QModelIndex index(int row, int column, const QModelIndex& parent = QModelIndex()) const override;
    QModelIndex parent(const QModelIndex& index) const override;
    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    // Asks the engine to delete the accounts of these rows; the rows stay
    // until the engine's Remove notification arrives.
    bool removeRows(int row, int count, const QModelIndex& parent = QModelIndex()) override;

    bool init() override;
    void removeStorage(const QUuid& id);
    void editStorage(const QUuid& id);
    void updateOnSyncReposytory(const QUuid& id, bool value);

    // The icon of a provider type; size 0 keeps the image's own scale.
    static QIcon storageIcon(int type, int size = 0);

    // How long to wait before asking again when the engine is not ready yet;
    // one minute, shorter only in tests.
    int retryInterval() const { return m_retryInterval; }
    void setRetryInterval(int ms) { m_retryInterval = ms; }
    // Ids asked for by editStorage() that no reply has brought yet.
    QVector<QUuid> awaitedIds() const { return m_awaited; }

public slots:
    void onNotification(const QJsonDocument& document);

private slots:
    void onGetConnectionResult();
    void onEditStorage();
    void onRemovedResult();

private:
    bool sendGetConnection(const char* slot);
    QVariant cell(const QMap<QString, QVariant>& row, int column) const;
    void replaceRow(int row, const QUuid& id, const QMap<QString, QVariant>& values);

    QMap<QUuid, QMap<QString, QVariant>> m_connections;
    QVector<QUuid> m_rows;
    QVector<QUuid> m_awaited;
    int m_retryInterval = 60000;
};

} // namespace NVB::GUI
