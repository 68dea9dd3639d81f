#pragma once

#include <QPair>
#include <QUrl>
#include <QVector>

#include "base.h"

namespace NVL::Cloud::Info {

class BackBlaze : public Base
{
public:
    BackBlaze();

    QUrl defaultEndpoint() const;
    // (display text, bucket type sent for a new bucket).
    QVector<QPair<QString, QString>> containerAccessType() const;
};

} // namespace NVL::Cloud::Info
