#pragma once

#include <QString>

namespace NVB::GUI {

// The program of a command line a user typed: a quoted first word is taken
// whole, blanks included and quotes removed; otherwise the text before the
// first blank.
QString getProgramPath(const QString& commandLine);

} // namespace NVB::GUI
