#include "app/icons/imagemanager.h"

#include <QFileInfo>
#include <QGuiApplication>
#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>

#include "app/application.h"

namespace NVB::GUI {

namespace {
constexpr int SideWidth = 150;
constexpr int SideHeight = 460;
} // namespace

QString ImageManager::fileName(int type)
{
    switch (type) {
    case WizardBackground:
        return QStringLiteral("wizard-background.png");
    default:
        return QString();
    }
}

QPixmap ImageManager::image(int type)
{
    const QString name = fileName(type);
    if (name.isEmpty())
        return QPixmap();
    const QString own = Application::getImagesPath() + QLatin1Char('/') + name;
    if (QFileInfo::exists(own)) {
        QPixmap pixmap(own);
        if (!pixmap.isNull())
            return pixmap;
    }
    return drawnWizardBackground();
}

QPixmap ImageManager::drawnWizardBackground()
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
