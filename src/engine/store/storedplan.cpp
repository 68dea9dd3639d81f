#include "storedplan.h"

#include "records/plan/base.h"

namespace NVB::Engine {

void StoredPlan::describe(const NVB::Info::Plan::Base& record)
{
    id = record.id();
    xml = record.toXml();
    name = record.name();
    type = record.type();
    subtype = record.subtype();
    storageId = record.storage();
}

} // namespace NVB::Engine
