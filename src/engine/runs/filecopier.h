#pragma once

#include <QString>

namespace NVB::Engine {

// Copies one regular file with its modification time and permissions. The
// data goes to "<target>.part" first and is renamed into place once whole, so
// a run that is killed never leaves a file that looks complete.
class FileCopier
{
public:
    // False with the reason in *error.
    static bool copy(const QString& source, const QString& target, QString* error);
};

} // namespace NVB::Engine
