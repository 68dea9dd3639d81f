#include "sslcertmaketrustdialog.h"

#include <QCryptographicHash>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QLocale>
#include <QPushButton>
#include <QVBoxLayout>

namespace NVB::GUI::Settings::Account {

namespace {

QString names(const QStringList& list)
{
    return list.isEmpty() ? QObject::tr("N/A") : list.join(QStringLiteral(", "));
}

QString fingerprint(const QSslCertificate& certificate)
{
    const QByteArray digest = certificate.digest(QCryptographicHash::Sha256).toHex().toUpper();
    QStringList pairs;
    for (int i = 0; i < digest.size(); i += 2)
        pairs.append(QString::fromLatin1(digest.mid(i, 2)));
    return pairs.join(QLatin1Char(':'));
}

QLabel* value(const QString& text)
{
    auto* label = new QLabel(text);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    label->setWordWrap(true);
    return label;
}

} // namespace

SslCertMakeTrustDialog::SslCertMakeTrustDialog(
    const QSslCertificate& certificate, const QString& endpoint, QWidget* parent)
    : QDialog(parent)
{
    setWindowTitle(tr("Untrusted certificate"));
    auto* layout = new QVBoxLayout(this);
    auto* intro = new QLabel(tr("The server %1 presented a certificate that is not trusted. Trust it only if you "
                                "know it belongs to this server.")
                                 .arg(endpoint.toHtmlEscaped()));
    intro->setWordWrap(true);
    layout->addWidget(intro);
    auto* form = new QFormLayout;
    form->addRow(tr("Issued to:"), value(names(certificate.subjectInfo(QSslCertificate::CommonName))));
    form->addRow(tr("Issued by:"), value(names(certificate.issuerInfo(QSslCertificate::CommonName))));
    form->addRow(
        tr("Valid from:"), value(QLocale().toString(certificate.effectiveDate().toLocalTime(), QLocale::ShortFormat)));
    form->addRow(
        tr("Valid until:"), value(QLocale().toString(certificate.expiryDate().toLocalTime(), QLocale::ShortFormat)));
    auto* print = value(fingerprint(certificate));
    print->setMinimumWidth(300);
    form->addRow(tr("SHA-256:"), print);
    layout->addLayout(form);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Cancel, this);
    m_trust = buttons->addButton(tr("&Trust"), QDialogButtonBox::AcceptRole);
    connect(buttons, &QDialogButtonBox::accepted, this, [this] { done(Trust); });
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    layout->addWidget(buttons);
}

} // namespace NVB::GUI::Settings::Account
