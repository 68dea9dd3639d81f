#pragma once

#include <QByteArray>
#include <QDomElement>
#include <QString>

namespace NVB::Info::Plan {

// Encryption options of a backup plan; reached as Backup::Encyption.
class BackupEncyption
{
public:
    enum Type { AES128 = 0, AES192 = 1, AES256 = 2, DES64 = 3, DES112 = 4, TripleDES168 = 5 };

    static QString typeToStr(Type type);

    bool isEnabled() const { return m_enabled; }
    void setEnabled(bool enabled) { m_enabled = enabled; }
    Type encryptionType() const { return m_encryptionType; }
    void setEncryptionType(Type type) { m_encryptionType = type; }
    QString password() const { return m_password; }
    void setPassword(const QString& password) { m_password = password; }
    // Base64 of the UTF-8 text of the hint; decode before showing it.
    QByteArray hint() const { return m_hint; }
    void setHint(const QByteArray& hint) { m_hint = hint; }

    void writeXml(QDomElement& parent) const;
    // Throws a QString naming the faulty element.
    void readXml(const QDomElement& element);

private:
    bool m_enabled = false;
    Type m_encryptionType = AES256;
    QString m_password;
    QByteArray m_hint;
};

} // namespace NVB::Info::Plan
