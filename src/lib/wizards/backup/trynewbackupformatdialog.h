#pragma once

#include <QDialog>

class QPushButton;

namespace NVB::GUI {

// Asks which format a new backup plan gets. exec() answers NewFormat or
// CurrentFormat by the button, or Rejected when the user closes the dialog
// without choosing.
class TryNewBackupFormatDialog : public QDialog
{
    Q_OBJECT
public:
    enum Choice { NewFormat = 2, CurrentFormat = 3 };

    explicit TryNewBackupFormatDialog(QWidget* parent = nullptr);

    QPushButton* tryNewButton() const { return m_tryNew; }
    QPushButton* useCurrentButton() const { return m_useCurrent; }

private:
    QPushButton* m_tryNew;
    QPushButton* m_useCurrent;
};

} // namespace NVB::GUI
