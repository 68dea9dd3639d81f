#include "backblazeb2addcontainer.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLineEdit>
#include <QPushButton>

#include "backblazeb2validator.h"
#include "cloud/info/backblaze.h"

namespace NVB::GUI::Settings::Account {

BackblazeB2::AddContainer::AddContainer(const QSet<QString>& existing, QWidget* parent)
    : Storages::AddContainer(parent)
    , m_existing(existing)
    , m_type(new QComboBox(this))
{
    nameEdit()->setValidator(new Validator(this));
    for (const auto& type : NVL::Cloud::Info::BackBlaze().containerAccessType())
        m_type->addItem(type.first, type.second);
    form()->addRow(tr("Type:"), m_type);
    setNote(tr("Container name must be globally unique. Name must be more 6 characters"));
}

QString BackblazeB2::AddContainer::type() const
{
    return m_type->currentData().toString();
}

void BackblazeB2::AddContainer::onDataChanged()
{
    const QString name = nameEdit()->text().trimmed();
    buttonBox()->button(QDialogButtonBox::Ok)->setEnabled(name.size() >= 6 && !m_existing.contains(name));
}

} // namespace NVB::GUI::Settings::Account
