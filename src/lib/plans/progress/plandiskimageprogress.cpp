#include "plandiskimageprogress.h"

#include <QGridLayout>
#include <QLabel>

#include "app/delegates/duratondelegate.h"
#include "app/delegates/sizedelegate.h"
#include "diskwidget.h"
#include "service/notification/format.h"

namespace NVB::GUI {

namespace Keys = NVB::Common::Communication::Notification::Format::Worker::ReportProgress::DiskImage;

PlanDiskImageProgress::PlanDiskImageProgress(QWidget* parent)
    : PlanProgressBase(parent)
    , m_size(new QLabel(this))
    , m_speed(new QLabel(this))
    , m_elapsed(new QLabel(this))
    , m_disks(new DiskWidget(this))
{
    auto* layout = new QGridLayout(this);
    layout->addWidget(new QLabel(tr("Size:"), this), 0, 0);
    layout->addWidget(m_size, 0, 1);
    layout->addWidget(m_speed, 0, 2);
    layout->addWidget(new QLabel(tr("Elapsed:"), this), 1, 0);
    layout->addWidget(m_elapsed, 1, 1, 1, 2);
    layout->addWidget(m_disks, 2, 0, 1, 3);
    layout->setColumnStretch(2, 1);
    setDefault();
}

void PlanDiskImageProgress::setDefault()
{
    m_size->setText(QStringLiteral(" 0 "));
    m_speed->setText(QStringLiteral("( 0 )"));
    m_elapsed->clear();
    m_disks->setDefault();
}

void PlanDiskImageProgress::setCurrent(int)
{ }

void PlanDiskImageProgress::onUpdated(const QMap<QString, QVariant>& message)
{
    m_size->setText(SizeDelegate::toText(message.value(QLatin1String(Keys::Size)), QLocale()));
    m_speed->setText(
        QStringLiteral("( %1 / s )").arg(SizeDelegate::toText(message.value(QLatin1String(Keys::Speed)), QLocale())));
    m_elapsed->setText(DuratonDelegate::toText(message.value(QLatin1String(Keys::Elapsed))));
    m_disks->update(message.value(QLatin1String(Keys::Disks)));
    m_disks->adjustSize();
}

} // namespace NVB::GUI
