#pragma once

#include <QString>

namespace NVB::GUI::Settings::Account {

// Small text rules shared by the account dialogs.
class AccountUtility
{
public:
    // This computer's name, the default backup prefix.
    static QString computerName();
    // A backup prefix with the characters a folder name cannot carry on every
    // provider (/ : * ? > < |) taken out.
    static QString prefixFilter(const QString& prefix);
    // A path without its trailing slashes; a lone "/" stays.
    static QString removeTrailingCharacterAfterSlash(const QString& path);
    // The profile a request is made for: the user running the console.
    static QString currentProfile();
};

} // namespace NVB::GUI::Settings::Account
