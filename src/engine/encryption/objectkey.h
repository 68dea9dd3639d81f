#pragma once

#include <memory>

#include <QByteArray>
#include <QString>

namespace NVB::Engine {

// A key derived from a plan's password by PBKDF2-HMAC-SHA256 with a random
// salt. The salt, the iteration count and a key check travel in the header of
// every enciphered object, so an object names the key it needs and a wrong
// password is told apart from damaged data.
class ObjectKey
{
public:
    // Iterations of the derivation: slow enough that guessing passwords
    // against a stolen storage is costly, paid once per run and password.
    static constexpr int Iterations = 600000;
    static constexpr int SaltSize = 16;
    static constexpr int CheckSize = 16;

    // A fresh salt and the key of `bytes` length (16, 24 or 32); null when
    // the length is not one of those or the system's random source fails.
    static std::shared_ptr<const ObjectKey> create(const QString& password, int bytes);
    // The key an object's header names. Keys already derived in this process
    // are reused, so the many objects of one run cost one derivation. Null
    // with `error` set when the password does not give the recorded check.
    static std::shared_ptr<const ObjectKey> open(const QString& password, const QByteArray& salt, int iterations,
        int bytes, const QByteArray& check, QString* error);

    // The text every wrong-password failure carries.
    static QString wrongPasswordMessage();

    // The storage name of the object of a source path: a MAC of the path
    // under the key, in hex, so the storage shows no file names; the same
    // path gives the same name under one key.
    QByteArray objectName(const QString& path) const;

    const QByteArray& key() const { return m_key; }
    const QByteArray& salt() const { return m_salt; }
    const QByteArray& check() const { return m_check; }
    int iterations() const { return m_iterations; }

private:
    static std::shared_ptr<const ObjectKey> derive(
        const QString& password, const QByteArray& salt, int iterations, int bytes);

    QByteArray m_key;
    QByteArray m_salt;
    QByteArray m_check;
    int m_iterations = Iterations;
};

} // namespace NVB::Engine
