#include "wizards/backup/preactionwidget.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QRadioButton>
#include <QVBoxLayout>

namespace NVB::GUI {

PreActionWidget::PreActionWidget(const QString& title, QWidget* parent)
    : ActionWidget(title, parent)
    , m_exit(new QRadioButton(tr("Exit backup plan if pre-backup action failed"), this))
    , m_continue(new QRadioButton(tr("Continue backup plan if pre-backup action failed"), this))
{
    auto* group = new QButtonGroup(this);
    group->addButton(m_exit);
    group->addButton(m_continue);
    m_exit->setChecked(true);
    m_exit->setEnabled(false);
    m_continue->setEnabled(false);
    m_layout->addWidget(m_exit);
    m_layout->addWidget(m_continue);
    connect(enableBox(), &QCheckBox::toggled, m_exit, &QWidget::setEnabled);
    connect(enableBox(), &QCheckBox::toggled, m_continue, &QWidget::setEnabled);
    connect(m_exit, &QRadioButton::toggled, this, &PreActionWidget::terminateOnFailureChanged);
}

bool PreActionWidget::terminateOnFailure() const
{
    return m_exit->isChecked();
}

void PreActionWidget::setTerminateOnFailure(bool terminate)
{
    (terminate ? m_exit : m_continue)->setChecked(true);
}

} // namespace NVB::GUI
