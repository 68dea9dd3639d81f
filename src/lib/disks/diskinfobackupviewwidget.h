#pragma once

#include <QWidget>

class QTreeView;

namespace NVB::GUI {

class DiskInfoBackupModel;

// The disks and volumes of a disk image plan as a tree with check boxes.
// complete() is true while at least one row is chosen; changed() tells the
// page to ask again.
class DiskInfoBackupViewWidget : public QWidget
{
    Q_OBJECT
public:
    explicit DiskInfoBackupViewWidget(QWidget* parent = nullptr);

    void setModel(DiskInfoBackupModel* model);
    DiskInfoBackupModel* model() const { return m_model; }
    QTreeView* view() const { return m_view; }
    bool isComplete() const;

signals:
    void changed();

private:
    QTreeView* m_view;
    DiskInfoBackupModel* m_model = nullptr;
};

} // namespace NVB::GUI
