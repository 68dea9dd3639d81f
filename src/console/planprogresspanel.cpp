#include "planprogresspanel.h"

#include <QLabel>
#include <QStackedWidget>
#include <QVBoxLayout>

#include "plans/planstatuslist.h"
#include "plans/planxmllist.h"
#include "plans/progress/plandiskimageprogress.h"
#include "plans/progress/planfileprogress.h"
#include "records/plan/base.h"
#include "service/notification/format.h"

namespace NVB::Console {

namespace DiskImageKeys = NVB::Common::Communication::Notification::Format::Worker::ReportProgress::DiskImage;

PlanProgressPanel::PlanProgressPanel(QWidget* parent)
    : QWidget(parent)
    , m_idle(new QLabel(tr("Choose a plan to watch its progress."), this))
    , m_stack(new QStackedWidget(this))
    , m_file(new NVB::GUI::PlanFileProgress(this))
    , m_image(new NVB::GUI::PlanDiskImageProgress(this))
{
    m_stack->addWidget(m_idle);
    m_stack->addWidget(m_file);
    m_stack->addWidget(m_image);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_stack);
    if (const auto statuses = NVB::GUI::PlanStatusList::instance())
        connect(statuses, &NVB::GUI::PlanStatusList::updated, this, &PlanProgressPanel::onUpdated);
}

bool PlanProgressPanel::showsImage() const
{
    return m_stack->currentWidget() == m_image;
}

bool PlanProgressPanel::isImagePlan(const QUuid& id) const
{
    const auto plans = NVB::GUI::PlanXmlList::instance();
    const NVB::Info::Plan::Base* plan = plans ? plans->plan(id) : nullptr;
    return plan && plan->type() == 1;
}

void PlanProgressPanel::setPlan(const QUuid& id, int subtype)
{
    m_plan = id;
    if (id.isNull()) {
        m_stack->setCurrentWidget(m_idle);
        return;
    }
    NVB::GUI::PlanProgressBase* view = isImagePlan(id) ? static_cast<NVB::GUI::PlanProgressBase*>(m_image) : m_file;
    view->setDefault();
    view->setCurrent(subtype);
    m_stack->setCurrentWidget(view);
    // A plan that is running already shows where it stands at once.
    if (const auto statuses = NVB::GUI::PlanStatusList::instance()) {
        const QMap<QString, QVariant> last = statuses->status(id);
        if (!last.isEmpty())
            view->onUpdated(last);
    }
}

void PlanProgressPanel::onUpdated(const QUuid& id, const QMap<QString, QVariant>& message)
{
    if (id != m_plan || m_plan.isNull())
        return;
    // The message's own form decides when the plan's record isn't cached.
    const bool image = message.contains(QLatin1String(DiskImageKeys::Disks)) || isImagePlan(id);
    NVB::GUI::PlanProgressBase* view = image ? static_cast<NVB::GUI::PlanProgressBase*>(m_image) : m_file;
    m_stack->setCurrentWidget(view);
    view->onUpdated(message);
}

} // namespace NVB::Console
