#pragma once

#include <QString>

namespace NVB::Engine {

// What a backup does with symbolic links, from the default setting
// "BackupSymlink": the index of the console's choice, or the "true"/"false"
// of older settings files.
//
//   0 originals where they lie, and the links    links kept as links
//   1 originals where they lie                   links left out
//   2 originals instead of links                 links to files followed
//   3 links only                                 links kept as links
//   4 no links                                   links left out
//
// Originals are taken where the selection finds them; a link never pulls a
// file from outside the selection into the backup.
struct SymlinkPolicy
{
    bool followFileLinks = false;
    bool keepLinks = true;

    static SymlinkPolicy fromSetting(const QString& value);
};

} // namespace NVB::Engine
