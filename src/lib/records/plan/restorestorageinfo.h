#pragma once

#include "records/plan/storageinfo.h"

namespace NVB::Info::Plan {

// Provider options of a restore plan; reached as Restore::StorageInfo. The
// type is the retrieval tier of data in cold storage.
class RestoreStorageInfo : public StorageInfo
{
public:
    enum Type { Standard = 0, Bulk = 1, Expedited = 2 };

    Type type() const { return m_type; }
    void setType(Type type) { m_type = type; }

protected:
    void writeFields(QDomElement& element) const override;
    void readFields(const QDomElement& element) override;

private:
    Type m_type = Standard;
};

} // namespace NVB::Info::Plan
