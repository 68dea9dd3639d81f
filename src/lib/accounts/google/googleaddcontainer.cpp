#include "googleaddcontainer.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLineEdit>
#include <QPushButton>

#include "cloud/info/googlestorage.h"
#include "googlevalidator.h"

namespace NVB::GUI::Settings::Account {

Google::AddContainer::AddContainer(const QSet<QString>& existing, QWidget* parent)
    : Storages::AddContainer(parent)
    , m_existing(existing)
    , m_location(new QComboBox(this))
    , m_type(new QComboBox(this))
{
    nameEdit()->setValidator(new Validator(this));
    const NVL::Cloud::Info::GoogleStorage info;
    const auto regions = info.regions();
    for (auto it = regions.cbegin(); it != regions.cend(); ++it)
        m_location->addItem(QStringLiteral("%1 (%2)").arg(it.value().first, it.value().second), it.key());
    m_location->setCurrentIndex(qMax(0, m_location->findData(QStringLiteral("US"))));
    for (const auto& type : info.storageType())
        m_type->addItem(type.first, type.second);
    form()->addRow(tr("Location:"), m_location);
    form()->addRow(tr("Type:"), m_type);
}

QString Google::AddContainer::location() const
{
    return m_location->currentData().toString();
}

QString Google::AddContainer::type() const
{
    return m_type->currentData().toString();
}

void Google::AddContainer::onDataChanged()
{
    const QString name = nameEdit()->text().trimmed();
    buttonBox()->button(QDialogButtonBox::Ok)->setEnabled(!name.isEmpty() && !m_existing.contains(name));
}

} // namespace NVB::GUI::Settings::Account
