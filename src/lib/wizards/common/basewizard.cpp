#include "wizards/common/basewizard.h"

#include <QLabel>
#include <QPixmap>
#include <QShowEvent>

namespace NVB::GUI {

BaseWizard::BaseWizard(QWidget* parent, Qt::WindowFlags flags)
    : QWizard(parent, flags)
{ }

void BaseWizard::showEvent(QShowEvent* event)
{
    QWizard::showEvent(event);
    if (m_pixmapLabel.isNull()) {
        // The side label shows a copy of the wizard's own pixmap, which shares
        // its data and so its cache key; no label of a page does.
        const qint64 keys[] = {pixmap(WatermarkPixmap).cacheKey(), pixmap(BackgroundPixmap).cacheKey()};
        const auto labels = findChildren<QLabel*>();
        for (QLabel* label : labels) {
            const QPixmap shown = label->pixmap(Qt::ReturnByValue);
            if (!shown.isNull() && (shown.cacheKey() == keys[0] || shown.cacheKey() == keys[1])) {
                m_pixmapLabel = label;
                break;
            }
        }
    }
    fixPixmapSize();
}

void BaseWizard::paintEvent(QPaintEvent* event)
{
    // The style or the screen may have changed since the wizard was shown.
    fixPixmapSize();
    QWizard::paintEvent(event);
}

void BaseWizard::fixPixmapSize()
{
    if (m_pixmapLabel.isNull())
        return;
    const QPixmap shown = m_pixmapLabel->pixmap(Qt::ReturnByValue);
    if (shown.isNull())
        return;
    const QSize size = (QSizeF(shown.size()) / devicePixelRatioF()).toSize();
    if (m_pixmapLabel->size() != size)
        m_pixmapLabel->setFixedSize(size);
}

} // namespace NVB::GUI
