#include "googleaddauthenticatioinstallapp.h"

#include <QDesktopServices>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "cloud/info/googlestorage.h"
#include "core/nvldebug.h"
#include "oauthloopback.h"

namespace NVB::GUI::Settings::Account {

namespace {
const QString OutOfBand = QStringLiteral("urn:ietf:wg:oauth:2.0:oob");
} // namespace

Google::Add::AuthenticatioInstallApp::AuthenticatioInstallApp(QString* projectId, QString* code, QWidget* parent)
    : QDialog(parent)
    , m_projectId(projectId)
    , m_code(code)
    , m_projectIdEdit(new QLineEdit(*projectId, this))
    , m_getToken(new QPushButton(QStringLiteral("..."), this))
    , m_codeEdit(new QLineEdit(*code, this))
    , m_message(new QLabel(this))
    , m_buttons(new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this))
{
    setWindowTitle(tr("Authentication with Install Application"));
    m_getToken->setToolTip(tr("Sign in with the browser"));
    m_message->setWordWrap(true);
    m_message->hide();
    for (QLineEdit* edit : {m_projectIdEdit, m_codeEdit}) {
        edit->setMinimumWidth(Storages::Add::LineEditWidth);
        connect(edit, &QLineEdit::textChanged, this, &AuthenticatioInstallApp::onDataChanged);
    }
    auto* projectRow = new QHBoxLayout;
    projectRow->addWidget(m_projectIdEdit, 1);
    projectRow->addWidget(m_getToken);
    auto* form = new QFormLayout;
    form->addRow(tr("Project ID:"), projectRow);
    form->addRow(tr("Code:"), m_codeEdit);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addWidget(m_message);
    layout->addWidget(m_buttons);
    connect(m_getToken, &QPushButton::clicked, this, &AuthenticatioInstallApp::onGetToken);
    connect(m_buttons, &QDialogButtonBox::accepted, this, &AuthenticatioInstallApp::onAccept);
    connect(m_buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    onDataChanged();
}

QString Google::Add::AuthenticatioInstallApp::codeVerifier() const
{
    const bool fromBrowser = m_loopback && !m_receivedCode.isEmpty() && m_codeEdit->text().trimmed() == m_receivedCode;
    return fromBrowser ? m_loopback->codeVerifier() : QString();
}

QString Google::Add::AuthenticatioInstallApp::redirectUri() const
{
    return codeVerifier().isEmpty() ? OutOfBand : m_loopback->redirectUri();
}

void Google::Add::AuthenticatioInstallApp::onGetToken()
{
    const QString clientId = NVL::Cloud::Info::GoogleStorage::clientId();
    auto fail = [this](const QString& text) {
        NVL::NvlDebug(QStringLiteral("NVB")).warning() << text;
        m_message->setStyleSheet(QStringLiteral("color: red"));
        m_message->setText(text);
        m_message->show();
    };
    if (clientId.isEmpty()) {
        fail(tr("This build has no OAuth client of its own for Google; use a service account or access keys."));
        return;
    }
    // A new listener and verifier for every attempt: a code is good once.
    delete m_loopback;
    m_loopback = new OAuthLoopback(this);
    connect(m_loopback, &OAuthLoopback::codeReceived, this, &AuthenticatioInstallApp::onCodeReceived);
    connect(m_loopback, &OAuthLoopback::failed, this, fail);
    QString error;
    if (!m_loopback->start(&error)) {
        fail(error);
        return;
    }
    const QUrl url = m_loopback->authorizationUrl(NVL::Cloud::Info::GoogleStorage::authorizationEndpoint(), clientId,
        NVL::Cloud::Info::GoogleStorage::storageScope() + QLatin1Char(' ')
            + NVL::Cloud::Info::GoogleStorage::emailScope());
    m_message->setStyleSheet(QString());
    m_message->setText(tr("Sign in on the page the browser shows; the code will appear here."));
    m_message->show();
    if (!QDesktopServices::openUrl(url))
        fail(tr("Cannot open the browser. Open this address yourself: %1").arg(url.toString(QUrl::FullyEncoded)));
}

void Google::Add::AuthenticatioInstallApp::onCodeReceived(const QString& code)
{
    m_receivedCode = code;
    m_codeEdit->setText(code);
    m_message->setStyleSheet(QString());
    m_message->setText(tr("Signed in."));
    raise();
    activateWindow();
}

void Google::Add::AuthenticatioInstallApp::onDataChanged()
{
    m_buttons->button(QDialogButtonBox::Ok)
        ->setEnabled(!m_projectIdEdit->text().trimmed().isEmpty() && !m_codeEdit->text().trimmed().isEmpty());
}

void Google::Add::AuthenticatioInstallApp::onAccept()
{
    *m_projectId = m_projectIdEdit->text().trimmed();
    *m_code = m_codeEdit->text().trimmed();
    accept();
}

} // namespace NVB::GUI::Settings::Account
