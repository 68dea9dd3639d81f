#pragma once

#include <QMap>
#include <QUuid>
#include <QVariant>
#include <QWidget>

class QLabel;
class QStackedWidget;

namespace NVB::GUI {
class PlanDiskImageProgress;
class PlanFileProgress;
} // namespace NVB::GUI

namespace NVB::Console {

// The progress of the selected plan: the file or the disk image view, fed
// from the statuses the engine reports.
class PlanProgressPanel : public QWidget
{
    Q_OBJECT

public:
    explicit PlanProgressPanel(QWidget* parent = nullptr);

    NVB::GUI::PlanFileProgress* fileProgress() const { return m_file; }
    NVB::GUI::PlanDiskImageProgress* imageProgress() const { return m_image; }
    bool showsImage() const;

public slots:
    void setPlan(const QUuid& id, int subtype);

private slots:
    void onUpdated(const QUuid& id, const QMap<QString, QVariant>& message);

private:
    bool isImagePlan(const QUuid& id) const;

    QUuid m_plan;
    QLabel* m_idle;
    QStackedWidget* m_stack;
    NVB::GUI::PlanFileProgress* m_file;
    NVB::GUI::PlanDiskImageProgress* m_image;
};

} // namespace NVB::Console
