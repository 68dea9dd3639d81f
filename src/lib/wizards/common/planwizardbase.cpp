#include "wizards/common/planwizardbase.h"

#include <QScopeGuard>

#include "app/icons/imagemanager.h"

namespace NVB::GUI {

namespace {
// One flag for every plan wizard, whatever its kind.
bool g_wizardOpen = false;

constexpr int MinimumWidth = 655;
} // namespace

PlanWizardBase::PlanWizardBase(int planType, QWidget* parent)
    : BaseWizard(parent)
    , m_planType(planType)
{
    const QPixmap side = ImageManager::image(ImageManager::WizardBackground);
    setPixmap(QWizard::BackgroundPixmap, side);
    setWizardStyle(QWizard::MacStyle);
    setButtonLayout(
        {QWizard::Stretch, QWizard::CancelButton, QWizard::BackButton, QWizard::NextButton, QWizard::FinishButton});
    setMinimumWidth(MinimumWidth);
    setMinimumHeight(qRound(side.height() / side.devicePixelRatioF()));
}

QString PlanWizardBase::wizardName(int planType)
{
    switch (planType) {
    case PlanTypeBackup:
        return tr("Backup plan");
    case PlanTypeRestore:
        return tr("Restore plan");
    default:
        return QString();
    }
}

bool PlanWizardBase::isWizardOpen()
{
    return g_wizardOpen;
}

void PlanWizardBase::resizeWizardPages()
{
    QSize size = minimumSize();
    for (int id : pageIds()) {
        if (QWizardPage* wizardPage = page(id))
            size = size.expandedTo(wizardPage->sizeHint());
    }
    setMinimumSize(size);
}

int PlanWizardBase::exec()
{
    if (g_wizardOpen)
        return 0;
    g_wizardOpen = true;
    const auto clear = qScopeGuard([] { g_wizardOpen = false; });
    return BaseWizard::exec();
}

} // namespace NVB::GUI
