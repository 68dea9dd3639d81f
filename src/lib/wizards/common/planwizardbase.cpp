#include "wizards/common/planwizardbase.h"

#include <QGuiApplication>
#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <QScopeGuard>

namespace NVB::GUI {

namespace {
// One flag for every plan wizard, whatever its kind.
bool g_wizardOpen = false;

constexpr int SideWidth = 150;
constexpr int SideHeight = 460;
constexpr int MinimumWidth = 655;
} // namespace

PlanWizardBase::PlanWizardBase(int planType, QWidget* parent)
    : BaseWizard(parent)
    , m_planType(planType)
{
    const QPixmap side = sidePixmap();
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

QPixmap PlanWizardBase::sidePixmap()
{
    // The side band of the wizard: a calm gradient with a cloud, drawn here so
    // that it follows the device pixel ratio instead of being scaled.
    const qreal ratio = qGuiApp ? qGuiApp->devicePixelRatio() : 1.0;
    QPixmap pixmap(QSize(SideWidth, SideHeight) * ratio);
    pixmap.setDevicePixelRatio(ratio);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    QLinearGradient gradient(0, 0, 0, SideHeight);
    gradient.setColorAt(0.0, QColor(0x1f, 0x5f, 0x9e));
    gradient.setColorAt(1.0, QColor(0x0d, 0x2f, 0x55));
    painter.fillRect(QRect(0, 0, SideWidth, SideHeight), gradient);

    QPainterPath cloud;
    const QPointF centre(SideWidth / 2.0, SideHeight * 0.3);
    cloud.addEllipse(centre + QPointF(-28, 0), 22, 18);
    cloud.addEllipse(centre + QPointF(0, -12), 26, 24);
    cloud.addEllipse(centre + QPointF(28, 0), 22, 18);
    cloud.addRoundedRect(QRectF(centre.x() - 48, centre.y() - 4, 96, 22), 11, 11);
    cloud.setFillRule(Qt::WindingFill);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(0xf2, 0xf6, 0xfb));
    painter.drawPath(cloud);

    // An upward arrow in the cloud: the data goes to the storage.
    painter.setBrush(QColor(0x1f, 0x5f, 0x9e));
    QPolygonF arrow;
    arrow << centre + QPointF(0, -14) << centre + QPointF(12, 0) << centre + QPointF(5, 0) << centre + QPointF(5, 12)
          << centre + QPointF(-5, 12) << centre + QPointF(-5, 0) << centre + QPointF(-12, 0);
    painter.drawPolygon(arrow);
    painter.end();
    return pixmap;
}

} // namespace NVB::GUI
