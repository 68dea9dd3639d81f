#pragma once

#include "planprogressbase.h"

class QLabel;

namespace NVB::GUI {

// The progress of a disk image plan: size, speed, elapsed time and a bar
// per disk and per volume.
class PlanDiskImageProgress : public PlanProgressBase
{
    Q_OBJECT

public:
    class DiskWidget;

    explicit PlanDiskImageProgress(QWidget* parent = nullptr);

    void setDefault() override;
    void setCurrent(int subType) override;

    QLabel* sizeLabel() const { return m_size; }
    QLabel* speedLabel() const { return m_speed; }
    QLabel* elapsedLabel() const { return m_elapsed; }
    DiskWidget* diskWidget() const { return m_disks; }

public slots:
    void onUpdated(const QMap<QString, QVariant>& message) override;

private:
    QLabel* m_size;
    QLabel* m_speed;
    QLabel* m_elapsed;
    DiskWidget* m_disks;
};

} // namespace NVB::GUI
