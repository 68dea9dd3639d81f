#pragma once

#include <QMap>
#include <QString>
#include <QVariant>
#include <QWidget>

namespace NVB::GUI {

// A view of one running plan's progress, fed with the V1 progress message
// that PlanStatusList keeps.
class PlanProgressBase : public QWidget
{
    Q_OBJECT

public:
    using QWidget::QWidget;

    virtual void setDefault() = 0;
    // 1 backup, 2 restore: the job kind changes what the figures mean.
    virtual void setCurrent(int subType) = 0;

public slots:
    virtual void onUpdated(const QMap<QString, QVariant>& message) = 0;
};

} // namespace NVB::GUI
