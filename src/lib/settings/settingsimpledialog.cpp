#include "settings/settingsimpledialog.h"

#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QVBoxLayout>

namespace NVB::GUI {

SettingSimpleDialog::SettingSimpleDialog(QWidget* parent)
    : QDialog(parent)
    , m_layout(new QVBoxLayout(this))
{
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    auto* bottom = new QHBoxLayout();
    bottom->addStretch(1);
    bottom->addWidget(buttons);
    m_layout->addLayout(bottom);
    connect(buttons, &QDialogButtonBox::rejected, this, &SettingSimpleDialog::reject);
}

void SettingSimpleDialog::setWidget(QWidget* widget)
{
    if (!widget)
        return;
    setWindowTitle(widget->windowTitle());
    m_layout->insertWidget(m_layout->count() - 1, widget);
}

} // namespace NVB::GUI
