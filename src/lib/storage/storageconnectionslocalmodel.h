#pragma once

#include "storageconnectionsfiltermodel.h"

namespace NVB::GUI {

// The File System accounts of the storage table.
class StorageConnectionsLocalModel : public StorageConnectionsFilterModel
{
    Q_OBJECT

public:
    explicit StorageConnectionsLocalModel(QObject* parent = nullptr);
};

} // namespace NVB::GUI
