#include "ciphertransform.h"

#include "encryption/objectkey.h"
#include "encryption/objectopener.h"
#include "encryption/objectsealer.h"

namespace NVB::Engine {

CipherTransform::CipherTransform(const QString& password, int bytes)
    : m_password(password)
    , m_bytes(bytes)
    , m_key(ObjectKey::create(password, bytes))
{ }

QString CipherTransform::name() const
{
    return QStringLiteral("aes-%1-gcm").arg(m_bytes * 8);
}

TransformResult CipherTransform::encode(const QByteArray& raw) const
{
    TransformResult result;
    if (!m_key) {
        result.error = QStringLiteral("The encryption key cannot be made");
        return result;
    }
    ObjectSealer sealer(m_key);
    if (!sealer.add(raw.constData(), size_t(raw.size()), &result.data) || !sealer.finish(&result.data)) {
        result.data.clear();
        result.error = QStringLiteral("The data cannot be enciphered");
    }
    return result;
}

TransformResult CipherTransform::decode(const QByteArray& stored) const
{
    TransformResult result;
    ObjectOpener opener(m_password);
    if (!opener.feed(stored.constData(), size_t(stored.size()), &result.data) || !opener.finish()) {
        result.data.clear();
        result.error = opener.error();
    }
    return result;
}

} // namespace NVB::Engine
