#pragma once

#include "wizards/backup/actionwidget.h"

class QRadioButton;

namespace NVB::GUI {

// The command after a backup, and whether it runs after a failed one too.
class PostActionWidget : public ActionWidget
{
    Q_OBJECT
public:
    explicit PostActionWidget(const QString& title, QWidget* parent = nullptr);

    bool runOnBackupFailure() const;
    void setRunOnBackupFailure(bool run);

    QRadioButton* onlySuccessRadio() const { return m_onlySuccess; }
    QRadioButton* alwaysRadio() const { return m_always; }

signals:
    void runOnBackupFailureChanged(bool run);

private:
    QRadioButton* m_onlySuccess;
    QRadioButton* m_always;
};

} // namespace NVB::GUI
