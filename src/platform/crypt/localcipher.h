#pragma once

#include <QByteArray>
#include <QString>

namespace SHARED::cryptNS {

// AES-256-SIV over UTF-8 text. Deterministic: the same text under the same key
// always gives the same output, which the master password check relies on;
// authenticated: a changed byte, or a text made under another key, fails to
// decrypt. Output: "nvb1:" and the Base64 of the 16-byte tag and the cipher
// text.
class LocalCipher
{
public:
    static constexpr int KeySize = 64; // SIV takes two AES-256 keys

    explicit LocalCipher(const QByteArray& key);

    // The key of an installation, kept in a 0600 file made on first use. Two
    // processes making it at once end with the same key.
    static LocalCipher forKeyFile(const QString& path);

    QString encrypt(const QString& text) const;
    // Throws a QString that says why the text cannot be deciphered.
    QString decrypt(const QString& text) const;

private:
    static QByteArray loadOrCreateKey(const QString& path);

    QByteArray m_key;
};

} // namespace SHARED::cryptNS
