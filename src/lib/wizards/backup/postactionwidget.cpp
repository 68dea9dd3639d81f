#include "wizards/backup/postactionwidget.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QRadioButton>
#include <QVBoxLayout>

namespace NVB::GUI {

PostActionWidget::PostActionWidget(const QString& title, QWidget* parent)
    : ActionWidget(title, parent)
    , m_onlySuccess(new QRadioButton(tr("Execute action only if backup has been successfully completed"), this))
    , m_always(new QRadioButton(tr("Execute action regardless of the backup result"), this))
{
    auto* group = new QButtonGroup(this);
    group->addButton(m_onlySuccess);
    group->addButton(m_always);
    m_onlySuccess->setChecked(true);
    m_onlySuccess->setEnabled(false);
    m_always->setEnabled(false);
    m_layout->addWidget(m_onlySuccess);
    m_layout->addWidget(m_always);
    connect(enableBox(), &QCheckBox::toggled, m_onlySuccess, &QWidget::setEnabled);
    connect(enableBox(), &QCheckBox::toggled, m_always, &QWidget::setEnabled);
    connect(m_always, &QRadioButton::toggled, this, &PostActionWidget::runOnBackupFailureChanged);
}

bool PostActionWidget::runOnBackupFailure() const
{
    return m_always->isChecked();
}

void PostActionWidget::setRunOnBackupFailure(bool run)
{
    (run ? m_always : m_onlySuccess)->setChecked(true);
}

} // namespace NVB::GUI
