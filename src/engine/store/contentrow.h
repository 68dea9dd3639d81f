#pragma once

#include <QString>

#include "storedcontent.h"

class QSqlQuery;

namespace NVB::Engine {

// One `contents` row as the repository's queries select it: the columns,
// prefixed `c.`, and the reading of them back in that order.
class ContentRow
{
public:
    static const QString& columns();
    static StoredContent read(const QSqlQuery& query);
};

} // namespace NVB::Engine
