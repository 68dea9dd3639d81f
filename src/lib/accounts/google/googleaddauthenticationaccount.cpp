#include "googleaddauthenticationaccount.h"

#include <QDialogButtonBox>
#include <QFile>
#include <QFileDialog>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "core/nvldebug.h"

namespace NVB::GUI::Settings::Account {

namespace {
// A real key file is a few kilobytes; this keeps a wrong pick from being read.
constexpr qint64 MaxKeyFile = 1024 * 1024;
} // namespace

Google::Add::AuthenticationAccount::AuthenticationAccount(
    QString* projectId, QString* serviceAccount, QByteArray* privateKey, QWidget* parent)
    : QDialog(parent)
    , m_projectId(projectId)
    , m_serviceAccount(serviceAccount)
    , m_privateKey(privateKey)
    , m_key(*privateKey)
    , m_projectIdEdit(new QLineEdit(*projectId, this))
    , m_serviceAccountEdit(new QLineEdit(*serviceAccount, this))
    , m_keyLabel(new QLabel(privateKey->isEmpty() ? tr("Not specified") : tr("Imported"), this))
    , m_import(new QPushButton(tr("Import"), this))
    , m_buttons(new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this))
{
    setWindowTitle(tr("Authentication with Service Account"));
    for (QLineEdit* edit : {m_projectIdEdit, m_serviceAccountEdit}) {
        edit->setMinimumWidth(Storages::Add::LineEditWidth);
        connect(edit, &QLineEdit::textChanged, this, &AuthenticationAccount::onDataChanged);
    }
    auto* keyRow = new QHBoxLayout;
    keyRow->addWidget(m_keyLabel, 1);
    keyRow->addWidget(m_import);
    auto* form = new QFormLayout;
    form->addRow(tr("Project ID"), m_projectIdEdit);
    form->addRow(tr("Service acc. email:"), m_serviceAccountEdit);
    form->addRow(tr("Private key (p12):"), keyRow);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addWidget(m_buttons);
    connect(m_import, &QPushButton::clicked, this, &AuthenticationAccount::onImport);
    connect(m_buttons, &QDialogButtonBox::accepted, this, &AuthenticationAccount::onAccept);
    connect(m_buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    onDataChanged();
}

void Google::Add::AuthenticationAccount::onImport()
{
    const QString path = QFileDialog::getOpenFileName(
        this, tr("Import private key"), QString(), QStringLiteral("*.p12 (*.p12);;*.json (*.json)"));
    if (!path.isEmpty())
        importFile(path);
}

bool Google::Add::AuthenticationAccount::importFile(const QString& path)
{
    QFile file(path);
    QByteArray bytes;
    if (file.open(QIODevice::ReadOnly) && file.size() <= MaxKeyFile)
        bytes = file.readAll();
    if (bytes.isEmpty()) {
        NVL::NvlDebug(QStringLiteral("NVB")).warning()
            << QStringLiteral("Can't read private key file %1: %2").arg(path, file.errorString());
        m_keyLabel->setText(tr("Cannot read the file"));
        m_keyLabel->setStyleSheet(QStringLiteral("color: red"));
        return false;
    }
    m_key = bytes;
    const QJsonObject json = QJsonDocument::fromJson(bytes).object();
    if (m_projectIdEdit->text().trimmed().isEmpty())
        m_projectIdEdit->setText(json.value(QStringLiteral("project_id")).toString());
    if (m_serviceAccountEdit->text().trimmed().isEmpty())
        m_serviceAccountEdit->setText(json.value(QStringLiteral("client_email")).toString());
    m_keyLabel->setText(tr("Imported"));
    m_keyLabel->setStyleSheet(QString());
    onDataChanged();
    return true;
}

void Google::Add::AuthenticationAccount::onDataChanged()
{
    m_buttons->button(QDialogButtonBox::Ok)
        ->setEnabled(!m_projectIdEdit->text().trimmed().isEmpty() && !m_serviceAccountEdit->text().trimmed().isEmpty()
            && !m_key.isEmpty());
}

void Google::Add::AuthenticationAccount::onAccept()
{
    *m_projectId = m_projectIdEdit->text().trimmed();
    *m_serviceAccount = m_serviceAccountEdit->text().trimmed();
    *m_privateKey = m_key;
    accept();
}

} // namespace NVB::GUI::Settings::Account
