#include "cryptns.h"

#include "core/apppath.h"
#include "localcipher.h"

namespace SHARED::cryptNS {

namespace {

// The key file is read on every call: it is tiny, and a test or a tool that
// moves the config directory gets the key of the directory it moved to.
LocalCipher installationCipher()
{
    return LocalCipher::forKeyFile(NVB::Defines::AppPath::to().config() + QStringLiteral("/local.key"));
}

} // namespace

QString encrypt_local_password(const QString& text)
{
    return installationCipher().encrypt(text);
}

QString decrypt_local_password(const QString& text)
{
    return installationCipher().decrypt(text);
}

} // namespace SHARED::cryptNS
