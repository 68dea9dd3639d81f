#pragma once

#include <QJsonObject>
#include <QString>

namespace NVB::System::Progress {

// One line of a running plan's progress ("Uploading: 12 of 40 files").
class IProgressItem
{
public:
    virtual ~IProgressItem() = default;
    virtual QString toString() const = 0;
    virtual QJsonObject toJson() const = 0;
};

} // namespace NVB::System::Progress
