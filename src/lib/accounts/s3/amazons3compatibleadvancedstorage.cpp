#include "amazons3compatibleadvancedstorage.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>

namespace NVB::GUI::Settings::Account {

AmazonS3Compatible::AdvancedStorage::AdvancedStorage(
    bool useSsl, bool prefixDisabled, Storages::Add& dialog, QWidget* parent)
    : Account::AdvancedStorage(prefixDisabled, useSsl, false, dialog, parent)
{ }

AmazonS3Compatible::AdvancedStorage::AdvancedStorage(bool useSsl, bool prefixDisabled, Storages::Add& dialog,
    NVL::Cloud::Info::AmazonS3Like::Signature signature, QWidget* parent)
    : Account::AdvancedStorage(prefixDisabled, useSsl, false, dialog, parent)
{
    m_signature = new QComboBox(this);
    m_signature->addItem(QStringLiteral("AWS2"));
    m_signature->addItem(QStringLiteral("AWS4"));
    m_signature->setCurrentIndex(int(signature) == 1 ? 1 : 0);
    auto* row = new QHBoxLayout;
    row->addWidget(new QLabel(tr("Signature version:"), this));
    row->addWidget(m_signature, 1);
    appendLayout(row);
}

int AmazonS3Compatible::AdvancedStorage::authType() const
{
    if (!m_signature)
        return 1;
    return m_signature->currentIndex() == 0 ? 0 : 1;
}

} // namespace NVB::GUI::Settings::Account
