#pragma once

#include <QString>

// The cipher of stored secrets (account passwords, the master password), under
// the installation's key in "<config>/local.key".
namespace SHARED::cryptNS {

QString encrypt_local_password(const QString& text);
// Throws a QString when the text cannot be deciphered.
QString decrypt_local_password(const QString& text);

} // namespace SHARED::cryptNS
