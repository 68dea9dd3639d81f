#include "storageconnectionsmodelcreator.h"

#include "models/models.h"
#include "storageconnectionsmodel.h"

namespace NVB::GUI {

StorageConnectionsModelCreator::StorageConnectionsModelCreator() = default;

StorageConnectionsModelCreator::~StorageConnectionsModelCreator()
{
    delete m_model.data();
}

QAbstractItemModel* StorageConnectionsModelCreator::create()
{
    if (!m_model) {
        m_model = new StorageConnectionsModel();
        m_model->init();
    }
    return m_model.data();
}

QString StorageConnectionsModelCreator::type() const
{
    return Models::Table::NvbStorageConnectionModelInfo::Type;
}

} // namespace NVB::GUI
