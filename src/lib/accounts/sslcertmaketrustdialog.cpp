#include "sslcertmaketrustdialog.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QLocale>
#include <QPushButton>
#include <QVBoxLayout>

#include "cloud/certificatepins.h"

namespace NVB::GUI::Settings::Account {

namespace {

QString distinguishedName(const QSslCertificate& certificate, bool issuer)
{
    static const QList<QPair<QSslCertificate::SubjectInfo, const char*>> parts {{QSslCertificate::CommonName, "CN"},
        {QSslCertificate::Organization, "O"}, {QSslCertificate::OrganizationalUnitName, "OU"},
        {QSslCertificate::LocalityName, "L"}, {QSslCertificate::StateOrProvinceName, "ST"},
        {QSslCertificate::CountryName, "C"}};
    QStringList text;
    for (const auto& part : parts) {
        const QStringList values = issuer ? certificate.issuerInfo(part.first) : certificate.subjectInfo(part.first);
        for (const QString& value : values)
            text.append(QStringLiteral("%1=%2").arg(QLatin1String(part.second), value));
    }
    return text.isEmpty() ? QObject::tr("N/A") : text.join(QStringLiteral(", "));
}

QString alternativeNames(const QSslCertificate& certificate)
{
    QStringList names;
    const auto all = certificate.subjectAlternativeNames();
    for (auto it = all.cbegin(); it != all.cend(); ++it)
        names.append((it.key() == QSsl::IpAddressEntry ? QStringLiteral("IP:") : QStringLiteral("DNS:")) + it.value());
    return names.isEmpty() ? QObject::tr("N/A") : names.join(QStringLiteral(", "));
}

QLabel* value(const QString& text)
{
    auto* label = new QLabel(text);
    label->setTextFormat(Qt::PlainText);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    label->setWordWrap(true);
    return label;
}

} // namespace

SslCertMakeTrustDialog::SslCertMakeTrustDialog(
    const QSslCertificate& certificate, const QString& endpoint, const QStringList& reasons, QWidget* parent)
    : QDialog(parent)
{
    setWindowTitle(tr("Untrusted certificate"));
    auto* layout = new QVBoxLayout(this);
    const QString intro = tr("The server %1 presented a certificate that is not trusted. Trust it only if you "
                             "know it belongs to this server: it will be trusted for this server alone.")
                              .arg(endpoint);
    auto* introLabel = value(intro);
    layout->addWidget(introLabel);
    const QList<QPair<QString, QString>> rows {{tr("Subject:"), distinguishedName(certificate, false)},
        {tr("Alternative names:"), alternativeNames(certificate)},
        {tr("Issuer:"), distinguishedName(certificate, true)},
        {tr("Valid from:"), QLocale().toString(certificate.effectiveDate().toLocalTime(), QLocale::ShortFormat)},
        {tr("Valid until:"), QLocale().toString(certificate.expiryDate().toLocalTime(), QLocale::ShortFormat)},
        {tr("SHA-256:"),
            NVL::Cloud::CertificatePins::fingerprintText(NVL::Cloud::CertificatePins::fingerprint(certificate))},
        {tr("Not trusted because:"), reasons.isEmpty() ? tr("N/A") : reasons.join(QLatin1Char('\n'))}};
    auto* form = new QFormLayout;
    m_text = intro;
    for (const auto& row : rows) {
        auto* shown = value(row.second);
        shown->setMinimumWidth(300);
        form->addRow(row.first, shown);
        m_text += QLatin1Char('\n') + row.first + QLatin1Char(' ') + row.second;
    }
    layout->addLayout(form);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Cancel, this);
    m_trust = buttons->addButton(tr("&Trust"), QDialogButtonBox::AcceptRole);
    connect(buttons, &QDialogButtonBox::accepted, this, [this] { done(Trust); });
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    layout->addWidget(buttons);
}

} // namespace NVB::GUI::Settings::Account
