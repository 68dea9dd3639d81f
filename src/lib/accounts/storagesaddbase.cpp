#include "storagesaddbase.h"

namespace NVB::GUI::Settings {

Storages::AddBase::AddBase()
    : m_id(QUuid::createUuid())
{ }

Storages::AddBase::~AddBase() = default;

} // namespace NVB::GUI::Settings
