#pragma once

namespace NVB::License {

// What the installation's licence allows. This build has no licence server:
// the licence is the attribute "license" of the installation config file,
// "free" for the free edition and anything else (or nothing) for the full
// one, so that an unlicensed installation loses nothing. The attribute
// "networkShareLimit" overrides how many network shares all plans together
// may use. Read on every call, so a changed file takes effect at once.
class LicenseRestrictions
{
public:
    static bool isFreeEdition();

    // Compression, encryption and server side encryption of the data.
    static bool isCompressionAvailable();
    static bool isEncryptionAvailable();
    // Commands run before and after a backup.
    static bool isPrePostActionsAvailable();
    static bool isNotificationsAvailable();

    // How many network shares all backup plans together may use; negative
    // for no limit. The free edition allows one.
    static int networkShareLimit();
    static bool isNetworkSharesLimited() { return networkShareLimit() >= 0; }
};

} // namespace NVB::License
