#include "azureaddcontainer.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLineEdit>
#include <QPushButton>

#include "azurevalidator.h"
#include "cloud/info/azureblob.h"

namespace NVB::GUI::Settings::Account {

Azure::AddContainer::AddContainer(const QSet<QString>& existing, QWidget* parent)
    : Storages::AddContainer(parent)
    , m_existing(existing)
    , m_access(new QComboBox(this))
{
    nameEdit()->setValidator(new Validator(this));
    for (const auto& access : NVL::Cloud::Info::AzureBlob().accessType())
        m_access->addItem(access.first, access.second);
    form()->addRow(tr("Access Control:"), m_access);
}

QString Azure::AddContainer::access() const
{
    return m_access->currentData().toString();
}

void Azure::AddContainer::onDataChanged()
{
    const QString name = nameEdit()->text().trimmed();
    buttonBox()->button(QDialogButtonBox::Ok)->setEnabled(!name.isEmpty() && !m_existing.contains(name));
}

} // namespace NVB::GUI::Settings::Account
