#include "diskwidget.h"

#include <QGridLayout>
#include <QLabel>

#include "progressbarwidget.h"
#include "service/notification/format.h"

namespace NVB::GUI {

namespace Disk = NVB::Common::Communication::Notification::Format::Worker::ReportProgress::DiskImage::Disk;

PlanDiskImageProgress::DiskWidget::DiskWidget(QWidget* parent)
    : QWidget(parent)
    , m_layout(new QGridLayout(this))
{
    m_layout->setContentsMargins(0, 0, 0, 0);
    m_layout->setColumnStretch(1, 1);
}

void PlanDiskImageProgress::DiskWidget::update(const QVariant& disks)
{
    for (const QVariant& value : disks.toList()) {
        const QVariantMap disk = value.toMap();
        const QString diskId = disk.value(QLatin1String(Disk::Id)).toString();
        if (diskId.isEmpty())
            continue;
        updateRow(diskId, disk, false);
        for (const QVariant& volumeValue : disk.value(QLatin1String(Disk::Volumes)).toList()) {
            const QVariantMap volume = volumeValue.toMap();
            const QString volumeId = volume.value(QLatin1String(Disk::Volume::Id)).toString();
            if (!volumeId.isEmpty())
                updateRow(diskId + QLatin1Char('/') + volumeId, volume, true);
        }
    }
}

void PlanDiskImageProgress::DiskWidget::updateRow(const QString& key, const QVariantMap& entry, bool volume)
{
    auto it = m_rows.find(key);
    if (it == m_rows.end()) {
        Row row;
        row.name = new QLabel(this);
        row.bar = new ProgressBarWidget(this);
        // Volumes sit under their disk, indented.
        row.name->setIndent(volume ? 16 : 0);
        const int line = m_layout->rowCount();
        m_layout->addWidget(row.name, line, 0);
        m_layout->addWidget(row.bar, line, 1);
        it = m_rows.insert(key, row);
    }
    it->name->setText(entry.value(QLatin1String(volume ? Disk::Volume::Name : Disk::Name)).toString());
    it->bar->setRange(0, 100);
    it->bar->setValueFirst(
        entry.value(QLatin1String(volume ? Disk::Volume::ProgressRead : Disk::ProgressRead)).toInt());
    it->bar->setValueSecond(
        entry.value(QLatin1String(volume ? Disk::Volume::ProgressUpload : Disk::ProgressUpload)).toInt());
}

void PlanDiskImageProgress::DiskWidget::setDefault()
{
    for (const Row& row : std::as_const(m_rows)) {
        delete row.name;
        delete row.bar;
    }
    m_rows.clear();
}

ProgressBarWidget* PlanDiskImageProgress::DiskWidget::bar(const QString& key) const
{
    return m_rows.value(key).bar;
}

QString PlanDiskImageProgress::DiskWidget::name(const QString& key) const
{
    const Row row = m_rows.value(key);
    return row.name ? row.name->text() : QString();
}

} // namespace NVB::GUI
