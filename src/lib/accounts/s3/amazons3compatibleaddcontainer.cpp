#include "amazons3compatibleaddcontainer.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLineEdit>
#include <QPushButton>

#include "amazons3compatiblevalidator.h"

namespace NVB::GUI::Settings::Account {

AmazonS3Compatible::AddContainer::AddContainer(const QSet<QString>& existing, bool regionRow, QWidget* parent)
    : Storages::AddContainer(parent)
    , m_existing(existing)
    , m_region(new QComboBox(this))
{
    nameEdit()->setValidator(new Validator(this));
    setNote(tr("Container name must be globally unique. Name must be more 3 characters"));
    if (regionRow)
        form()->addRow(tr("Region:"), m_region);
    else
        m_region->hide();
}

void AmazonS3Compatible::AddContainer::setRegions(const QMap<QString, QPair<QString, QString>>& regions)
{
    m_region->clear();
    for (auto it = regions.cbegin(); it != regions.cend(); ++it)
        m_region->addItem(it.value().first, it.key());
    m_region->setCurrentIndex(regions.isEmpty() ? -1 : 0);
}

QString AmazonS3Compatible::AddContainer::location() const
{
    return m_region->currentData(Qt::UserRole).toString().trimmed();
}

void AmazonS3Compatible::AddContainer::onDataChanged()
{
    const QString name = nameEdit()->text().trimmed();
    buttonBox()->button(QDialogButtonBox::Ok)->setEnabled(name.size() >= 3 && !m_existing.contains(name));
}

} // namespace NVB::GUI::Settings::Account
