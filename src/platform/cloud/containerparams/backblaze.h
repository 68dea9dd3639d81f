#pragma once

#include "base.h"

namespace NVL::Cloud::ContainerParams {

// A bucket with its type (Info::BackBlaze::containerAccessType()).
class BackBlaze : public Base
{
public:
    BackBlaze(const QString& name, const QString& access);

    QString access() const { return m_access; }
    QJsonObject json() const override;

private:
    QString m_access;
};

} // namespace NVL::Cloud::ContainerParams
