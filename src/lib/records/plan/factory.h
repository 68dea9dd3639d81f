#pragma once

#include <QDomDocument>
#include <QSharedPointer>
#include <QString>

#include "records/plan/base.h"

namespace NVB::Info::Plan {

// Builds the record that a plan document describes. A document that is not a
// plan, lacks a field or holds a value outside its range gives a null pointer
// and one warning that names the element; it never gives a half-filled record.
class Factory
{
public:
    static QSharedPointer<Base> create(const QDomDocument& document);
    static QSharedPointer<Base> create(const QString& xml);
};

} // namespace NVB::Info::Plan
