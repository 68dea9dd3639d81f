#pragma once

class QWidget;

namespace NVB::Console {

// Keeps the console closed to whoever does not know the master password.
class MasterPasswordGate
{
public:
    static constexpr int MaxTries = 3;

    // True when no master password is set, or when the right one was given
    // within MaxTries; false after a cancel or the last wrong try.
    static bool unlock(QWidget* parent = nullptr);
};

} // namespace NVB::Console
