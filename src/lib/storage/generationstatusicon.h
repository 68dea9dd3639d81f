#pragma once

#include <QIcon>

#include "records/repository/archiveenums.h"
#include "records/repository/generation.h"

namespace NVB::GUI {

// The picture of one generation: the generation image, marked when it is
// encrypted, and replaced by the warning or error image when its state calls
// for attention (a failed check, a deep synchronisation still owed).
class GenerationStatusIcon
{
public:
    static QIcon icon(NVL::Archive::DeepSyncType deepSync, bool encrypted,
        NVB::Info::Repository::Generation::Status status, int size = 16);
};

} // namespace NVB::GUI
