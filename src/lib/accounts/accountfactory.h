#pragma once

#include <QModelIndex>

#include "cloud/cloudtype.h"
#include "storages.h"

class QAbstractItemModel;
class QDialog;
class QWidget;

namespace NVB::GUI::Settings::Account {

// Decides which dialog and which view a provider type gets.
class AccountFactory
{
public:
    // A new dialog for the type, owned by the caller; null, with a warning,
    // for a type that has no dialog in this edition. Every dialog is also a
    // Storages::AddBase, which gives the id of its account: a Storages::Add
    // for the providers' forms, MnsEdit for the accounts the managed
    // edition's service owns.
    static QDialog* add(NVL::Cloud::Type type, QWidget* parent = nullptr);
    static QDialog* add(int type, QWidget* parent = nullptr);
    // The read-only view of a row of the storage connection model, filled.
    static Storages::Info* view(const QModelIndex& index);
    // A dialog opened on a row of the storage connection model.
    static QDialog* edit(const QModelIndex& index, QWidget* parent = nullptr);
    // Asks, without blocking, whether to delete the account of a row; on yes
    // the model is asked to remove it and the engine does the rest.
    static void removeDialogExec(QAbstractItemModel* model, const QModelIndex& index, QWidget* parent = nullptr);

    // Whether add() can make a dialog for the type: the selectors offer the
    // others as not supported yet.
    static bool hasDialog(int type);
};

} // namespace NVB::GUI::Settings::Account
