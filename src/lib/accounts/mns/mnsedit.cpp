#include "accounts/mns/mnsedit.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

#include "accounts/advanced/advanced.h"
#include "accounts/selectmns.h"
#include "models/models.h"
#include "storage/storageconnectionsmodel.h"

namespace NVB::GUI::Settings::Account {

namespace Column = NVB::GUI::Models::Table::NvbStorageConnectionModelInfo::Column;

MnsEdit::MnsEdit(int type, QWidget* parent)
    : ProcessDialog(parent)
    , m_type(type)
    , m_icon(new QLabel(this))
    , m_provider(new QLabel(this))
    , m_name(new QLabel(this))
    , m_prefix(new QLabel(Advanced::defaultPrefix(), this))
    , m_note(new QLabel(this))
    , m_buttons(new QDialogButtonBox(QDialogButtonBox::Close, this))
{
    setWindowTitle(tr("Add Account"));
    auto* layout = new QVBoxLayout;
    auto* header = new QHBoxLayout;
    header->addWidget(m_icon);
    QFont bold = m_provider->font();
    bold.setBold(true);
    bold.setPointSizeF(bold.pointSizeF() * 1.2);
    m_provider->setFont(bold);
    header->addWidget(m_provider, 1);
    layout->addLayout(header);

    auto* form = new QFormLayout;
    form->addRow(tr("Display name:"), m_name);
    form->addRow(tr("Backup prefix:"), m_prefix);
    layout->addLayout(form);

    m_note->setWordWrap(true);
    m_note->setText(tr("Storage accounts of this computer are set up by your service provider. "
                       "Ask your administrator to add or change one."));
    layout->addWidget(m_note);
    setCentralLayout(layout);
    addDialogButtons(m_buttons);
    // Nothing here is saved: closing is the only way out, and it never asks
    // a caller to wait for a change.
    connect(m_buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    showType(type);
}

void MnsEdit::showType(int type)
{
    m_type = type;
    m_icon->setPixmap(StorageConnectionsModel::storageIcon(type, 32).pixmap(32, 32));
    m_provider->setText(SelectMns::storageName(type));
}

void MnsEdit::setItem(const QModelIndex& index)
{
    if (!index.isValid())
        return;
    const QAbstractItemModel* model = index.model();
    const auto cell = [&](int column) { return model->index(index.row(), column, index.parent()).data(); };
    setWindowTitle(tr("Edit Account"));
    setId(QUuid(cell(Column::ID).toString()));
    showType(cell(Column::Type).toInt());
    m_name->setText(cell(Column::DisplayName).toString());
    const QString prefix = cell(Column::Prefix).toString();
    m_prefix->setText(prefix.isEmpty() ? Advanced::defaultPrefix() : prefix);
}

QString MnsEdit::displayName() const
{
    return m_name->text();
}

QString MnsEdit::prefix() const
{
    return m_prefix->text();
}

QString MnsEdit::note() const
{
    return m_note->text();
}

} // namespace NVB::GUI::Settings::Account
