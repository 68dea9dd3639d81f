#include "storagesaddcontainer.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace NVB::GUI::Settings {

Storages::AddContainer::AddContainer(QWidget* parent)
    : QDialog(parent, Qt::Dialog)
{
    setWindowTitle(tr("Add New Container"));
    setWindowModality(Qt::WindowModal);
    auto* layout = new QVBoxLayout(this);
    m_form = new QFormLayout;
    m_name = new QLineEdit(this);
    m_name->setMinimumWidth(200);
    m_form->addRow(tr("Container Name:"), m_name);
    layout->addLayout(m_form);
    m_note = new QLabel(this);
    m_note->setWordWrap(true);
    m_note->hide();
    layout->addWidget(m_note);
    m_buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    m_buttons->button(QDialogButtonBox::Ok)->setEnabled(false);
    layout->addWidget(m_buttons);
    connect(m_name, &QLineEdit::textEdited, this, &AddContainer::onDataChanged);
    connect(m_buttons, &QDialogButtonBox::accepted, this, &AddContainer::onAccept);
    connect(m_buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
}

Storages::AddContainer::~AddContainer() = default;

QString Storages::AddContainer::name() const
{
    return m_name->text();
}

void Storages::AddContainer::setNote(const QString& text)
{
    m_note->setText(QStringLiteral("<small><b>%1</b> %2</small>").arg(tr("Note"), text));
    m_note->show();
}

void Storages::AddContainer::onDataChanged()
{
    m_buttons->button(QDialogButtonBox::Ok)->setEnabled(!m_name->text().trimmed().isEmpty());
}

void Storages::AddContainer::onAccept()
{
    accept();
}

} // namespace NVB::GUI::Settings
