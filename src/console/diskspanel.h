#pragma once

#include <QWidget>

class QLabel;
class QTreeView;

namespace NVB::GUI {
class DiskInfoBackupModel;
}

namespace NVB::Console {

// The machine's disks and volumes as the engine sees them.
class DisksPanel : public QWidget
{
    Q_OBJECT

public:
    explicit DisksPanel(QWidget* parent = nullptr);

    QTreeView* view() const { return m_view; }
    NVB::GUI::DiskInfoBackupModel* model() const { return m_model; }

public slots:
    void reload();

private:
    NVB::GUI::DiskInfoBackupModel* m_model;
    QTreeView* m_view;
    QLabel* m_message;
};

} // namespace NVB::Console
