#include "backupencyption.h"

#include "records/recordxml.h"

namespace NVB::Info::Plan {

QString BackupEncyption::typeToStr(Type type)
{
    switch (type) {
    case AES128:
        return QStringLiteral("AES 128");
    case AES192:
        return QStringLiteral("AES 192");
    case AES256:
        return QStringLiteral("AES 256");
    case DES64:
        return QStringLiteral("DES 64");
    case DES112:
        return QStringLiteral("DES 112");
    case TripleDES168:
        return QStringLiteral("3DES 168");
    }
    return QString();
}

void BackupEncyption::writeXml(QDomElement& parent) const
{
    QDomElement e = RecordXml::addElement(parent, QStringLiteral("Encryption"));
    RecordXml::addBool(e, QStringLiteral("Enabled"), m_enabled);
    RecordXml::addInt(e, QStringLiteral("Type"), m_encryptionType);
    RecordXml::addText(e, QStringLiteral("Password"), m_password);
    RecordXml::addText(e, QStringLiteral("Hint"), QString::fromLatin1(m_hint));
}

void BackupEncyption::readXml(const QDomElement& e)
{
    m_enabled = RecordXml::toBool(e, QStringLiteral("Enabled"));
    m_encryptionType
        = Type(RecordXml::toEnum(e, QStringLiteral("Type"), {AES128, AES192, AES256, DES64, DES112, TripleDES168}));
    m_password = RecordXml::text(e, QStringLiteral("Password"));
    const QString hint = RecordXml::text(e, QStringLiteral("Hint"));
    // The hint travels as the Base64 the record holds; anything else would be
    // shown to the user as garbage after decoding.
    const auto decoded = QByteArray::fromBase64Encoding(hint.toLatin1(), QByteArray::AbortOnBase64DecodingErrors);
    if (!decoded || decoded.decoded.toBase64() != hint.toLatin1())
        throw QStringLiteral("Element <%1/Hint> is not Base64").arg(RecordXml::path(e));
    m_hint = hint.toLatin1();
}

} // namespace NVB::Info::Plan
