#include "ciphertransform.h"

#include "encryption/objectkey.h"
#include "encryption/objectopener.h"
#include "encryption/objectsealer.h"
#include "repository/generationkey.h"

namespace NVB::Engine {

namespace {

// Where the sealer's header keeps the key length, the salt and the check.
constexpr int KeyLengthOffset = 5;
constexpr int IterationsOffset = 8;
constexpr int SaltOffset = 12;

} // namespace

CipherTransform::CipherTransform(const QString& password, int bytes)
    : m_password(password)
    , m_bytes(bytes)
    , m_key(ObjectKey::create(password, bytes))
{ }

CipherTransform::CipherTransform(
    std::unique_ptr<ChunkTransform> inner, std::shared_ptr<const ObjectKey> key, const QString& password)
    : m_inner(std::move(inner))
    , m_password(password)
    , m_bytes(key ? key->key().size() : 0)
    , m_key(std::move(key))
    , m_pinned(true)
{ }

CipherTransform::~CipherTransform() = default;

QString CipherTransform::name() const
{
    const QString cipher = GenerationKey::cipherName(m_bytes);
    return m_inner && m_inner->name() != QLatin1String("identity") ? m_inner->name() + QLatin1Char('+') + cipher
                                                                    : cipher;
}

TransformResult CipherTransform::encode(const QByteArray& raw) const
{
    TransformResult result;
    if (!m_key) {
        result.error = QStringLiteral("The encryption key cannot be made");
        return result;
    }
    TransformResult inner = m_inner ? m_inner->encode(raw) : TransformResult {QString(), raw};
    if (!inner.ok())
        return inner;
    ObjectSealer sealer(m_key);
    if (!sealer.add(inner.data.constData(), size_t(inner.data.size()), &result.data) || !sealer.finish(&result.data)) {
        result.data.clear();
        result.error = QStringLiteral("The data cannot be enciphered");
    }
    return result;
}

TransformResult CipherTransform::decode(const QByteArray& stored) const
{
    TransformResult result;
    if (m_pinned && m_key) {
        // Every piece of a generation is sealed under its one key: other key
        // material in a header is damage, and must not cost a derivation nor
        // pass for a wrong password.
        const quint32 iterations = quint32(m_key->iterations());
        const char count[4] = {char(iterations >> 24), char(iterations >> 16), char(iterations >> 8), char(iterations)};
        const QByteArray material = QByteArray(count, 4) + m_key->salt() + m_key->check();
        if (stored.size() < ObjectSealer::HeaderSize || stored.at(KeyLengthOffset) != char(m_bytes)
            || stored.mid(IterationsOffset, material.size()) != material) {
            result.error = QStringLiteral("the enciphered data is damaged (its header does not name the key)");
            return result;
        }
    }
    ObjectOpener opener(m_password);
    if (!opener.feed(stored.constData(), size_t(stored.size()), &result.data) || !opener.finish()) {
        result.data.clear();
        result.error = opener.error();
        return result;
    }
    return m_inner ? m_inner->decode(result.data) : result;
}

} // namespace NVB::Engine
