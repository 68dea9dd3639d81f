#include "selectitem.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QMouseEvent>

#include "storage/storageconnectionsmodel.h"

namespace NVB::GUI::Settings::Account {

Select::Item::Item(int type, const QString& name, QWidget* parent)
    : QFrame(parent)
    , m_type(type)
{
    setMouseTracking(true);
    setAttribute(Qt::WA_Hover);
    setAutoFillBackground(true);
    setCursor(Qt::PointingHandCursor);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(10, 4, 10, 4);
    auto* icon = new QLabel(this);
    icon->setPixmap(StorageConnectionsModel::storageIcon(type).pixmap(32, 32));
    icon->setFixedSize(32, 32);
    m_name = new QLabel(name, this);
    QFont font = m_name->font();
    font.setPointSizeF(font.pointSizeF() * 1.1);
    m_name->setFont(font);
    layout->addWidget(icon);
    layout->addWidget(m_name, 1);
}

QString Select::Item::name() const
{
    return m_name->text();
}

void Select::Item::setHighlighted(bool on)
{
    setBackgroundRole(on && isEnabled() ? QPalette::AlternateBase : QPalette::Window);
}

void Select::Item::enterEvent(QEvent* event)
{
    setHighlighted(true);
    QFrame::enterEvent(event);
}

void Select::Item::leaveEvent(QEvent* event)
{
    setHighlighted(false);
    QFrame::leaveEvent(event);
}

void Select::Item::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::EnabledChange)
        setCursor(isEnabled() ? Qt::PointingHandCursor : Qt::ArrowCursor);
    QFrame::changeEvent(event);
}

void Select::Item::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton && rect().contains(event->pos()) && isEnabled()) {
        emit changed(m_type);
        event->accept();
        return;
    }
    QFrame::mouseReleaseEvent(event);
}

} // namespace NVB::GUI::Settings::Account
