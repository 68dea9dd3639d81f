#pragma once

#include "wizards/backup/actionwidget.h"

class QRadioButton;

namespace NVB::GUI {

// The command before a backup, and whether its failure ends the plan.
class PreActionWidget : public ActionWidget
{
    Q_OBJECT
public:
    explicit PreActionWidget(const QString& title, QWidget* parent = nullptr);

    bool terminateOnFailure() const;
    void setTerminateOnFailure(bool terminate);

    QRadioButton* exitRadio() const { return m_exit; }
    QRadioButton* continueRadio() const { return m_continue; }

signals:
    void terminateOnFailureChanged(bool terminate);

private:
    QRadioButton* m_exit;
    QRadioButton* m_continue;
};

} // namespace NVB::GUI
