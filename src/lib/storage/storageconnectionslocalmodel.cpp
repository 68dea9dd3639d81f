#include "storageconnectionslocalmodel.h"

#include "cloud/cloudtype.h"

namespace NVB::GUI {

StorageConnectionsLocalModel::StorageConnectionsLocalModel(QObject* parent)
    : StorageConnectionsFilterModel(int(NVL::Cloud::Type::FileSystem), parent)
{ }

} // namespace NVB::GUI
