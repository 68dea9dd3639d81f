#pragma once

#include <QDialog>
#include <QPointer>
#include <QUuid>

#include "storages.h"

class QAbstractItemModel;
class QLabel;

namespace NVB::GUI::Settings {

// Waits, modal, until the shared storage connection model shows what a
// dialog asked the engine for: the new account, its change, or its absence.
// It cannot be cancelled: the engine's notification always comes, and the
// page must not show a state the engine has not reached.
class Storages::UpdateWatcher : public QDialog
{
    Q_OBJECT

public:
    enum Type { Add = 0, Update = 1, Remove = 2 };

    UpdateWatcher(const QUuid& id, Type type, QWidget* parent = nullptr);
    ~UpdateWatcher() override;

    QUuid watchedId() const { return m_id; }
    Type watchType() const { return m_type; }
    // False when no model could be made: the watcher then waits for nothing.
    bool isWatching() const { return !m_model.isNull(); }
    // Why the watch ended without the change, when the model reported an
    // error instead (the engine refused to delete an account in use, say).
    QString failure() const { return m_failure; }

    // Why the engine would refuse to remove the account, from the shared
    // plan table: the plans that keep their backups on it. Empty when none
    // does, or when no plan table is at hand (the engine then says it).
    static QString removalRefusal(const QUuid& account);

protected:
    void keyPressEvent(QKeyEvent* event) override;

private slots:
    void onRowsInserted(const QModelIndex& parent, int first, int last);
    void onDataChanged(const QModelIndex& topLeft, const QModelIndex& bottomRight);
    void onRowsRemoved();
    void onModelError(const QString& text);

private:
    bool holdsId(int first, int last, const QModelIndex& parent) const;

    QUuid m_id;
    Type m_type;
    QPointer<QAbstractItemModel> m_model;
    QString m_failure;
};

} // namespace NVB::GUI::Settings
