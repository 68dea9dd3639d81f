#pragma once

#include <QPointer>

#include "models/modelcreator.h"

namespace NVB::GUI {

class StorageConnectionsModel;

// Makes the one shared storage table, loaded at its first request, for an
// executable to register with ModelManager.
class StorageConnectionsModelCreator : public ModelCreator
{
public:
    StorageConnectionsModelCreator();
    ~StorageConnectionsModelCreator() override;

    QAbstractItemModel* create() override;
    QString type() const override;

private:
    QPointer<StorageConnectionsModel> m_model;
};

} // namespace NVB::GUI
