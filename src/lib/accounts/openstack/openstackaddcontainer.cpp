#include "openstackaddcontainer.h"

#include <QDialogButtonBox>
#include <QLineEdit>
#include <QPushButton>

#include "openstacknamevalidator.h"

namespace NVB::GUI::Settings::Account {

OpenStack::AddContainer::AddContainer(const QSet<QString>& existing, QWidget* parent)
    : Storages::AddContainer(parent)
    , m_existing(existing)
{
    nameEdit()->setValidator(new NameValidator(this));
}

void OpenStack::AddContainer::onDataChanged()
{
    const QString name = nameEdit()->text().trimmed();
    buttonBox()->button(QDialogButtonBox::Ok)->setEnabled(!name.isEmpty() && !m_existing.contains(name));
}

} // namespace NVB::GUI::Settings::Account
