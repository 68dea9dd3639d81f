#include "advancedstorage.h"

#include <QCheckBox>

namespace NVB::GUI::Settings::Account {

AdvancedStorage::AdvancedStorage(bool prefixDisabled, bool useSsl, bool hideSsl, Storages::Add& dialog, QWidget* parent)
    : Advanced(dialog, prefixDisabled, parent)
{
    build(useSsl, hideSsl);
}

AdvancedStorage::AdvancedStorage(
    const QString& prefix, const QStringList& items, bool prefixDisabled, bool useSsl, bool hideSsl, QWidget* parent)
    : Advanced(prefix, items, prefixDisabled, parent)
{
    build(useSsl, hideSsl);
}

void AdvancedStorage::build(bool useSsl, bool hideSsl)
{
    m_ssl = new QCheckBox(tr("Use SSL"), this);
    m_ssl->setChecked(useSsl);
    if (hideSsl) {
        m_ssl->hide();
        return;
    }
    appendWidget(m_ssl);
    connect(m_ssl, &QCheckBox::stateChanged, this, &AdvancedStorage::onDataChanged);
}

bool AdvancedStorage::useSsl() const
{
    return m_ssl->isChecked();
}

} // namespace NVB::GUI::Settings::Account
