#include "widgets/processdialog.h"

#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QVBoxLayout>

#include "widgets/progresswheel.h"

namespace NVB::GUI {

ProcessDialog::ProcessDialog(QWidget* parent, Qt::WindowFlags flags)
    : QDialog(parent, flags)
    , m_layout(new QVBoxLayout(this))
    , m_bottomLayout(new QHBoxLayout())
    , m_wheel(new ProgressWheel(this))
{
    m_layout->setContentsMargins(0, 0, 0, 0);
    m_layout->setSpacing(0);
    m_bottomLayout->setContentsMargins(15, 0, 15, 15);
    m_bottomLayout->addWidget(m_wheel);
    m_bottomLayout->addStretch(1);
    m_layout->addLayout(m_bottomLayout);
}

void ProcessDialog::setCentralLayout(QLayout* layout)
{
    if (!layout || layout == m_centralLayout)
        return;
    if (m_centralLayout) {
        m_layout->removeItem(m_centralLayout);
        delete m_centralLayout;
    }
    m_centralLayout = layout;
    m_layout->insertLayout(0, layout, 0);
    layout->setContentsMargins(15, 15, 15, 15);
    layout->setSpacing(9);
}

void ProcessDialog::addDialogButtons(QDialogButtonBox* buttons)
{
    if (buttons)
        m_bottomLayout->addWidget(buttons);
}

void ProcessDialog::showWaitProcess(bool on)
{
    setEnabled(!on);
    startWaitProcess(on);
    setCursor(on ? Qt::WaitCursor : Qt::ArrowCursor);
}

void ProcessDialog::startWaitProcess(bool on)
{
    m_wheel->animate(on);
}

} // namespace NVB::GUI
