#pragma once

#include <QMap>
#include <QVariant>
#include <QWidget>

#include "plandiskimageprogress.h"

class QGridLayout;
class QLabel;

namespace NVB::GUI {

class ProgressBarWidget;

// The disks of a disk image run, each with its volumes below it, each with a
// read and a sent share.
class PlanDiskImageProgress::DiskWidget : public QWidget
{
    Q_OBJECT

public:
    explicit DiskWidget(QWidget* parent = nullptr);

    void update(const QVariant& disks);
    void setDefault();

    // The bar of a disk, or of a volume by "diskId/volumeId"; null if unknown.
    ProgressBarWidget* bar(const QString& key) const;
    QString name(const QString& key) const;
    int rowCount() const { return m_rows.size(); }

private:
    struct Row
    {
        QLabel* name = nullptr;
        ProgressBarWidget* bar = nullptr;
    };
    void updateRow(const QString& key, const QVariantMap& entry, bool volume);

    QGridLayout* m_layout;
    QMap<QString, Row> m_rows;
};

} // namespace NVB::GUI
