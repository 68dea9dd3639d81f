#pragma once

#include <QStringList>

namespace NVB::Engine {

// The engine's data folder holds hosts, user names and enciphered secrets:
// only the engine's own user may read it. At start the folder is made 0700
// and every file in it 0600; each repair is logged so that an administrator
// sees that the permissions had been widened.
class DataFolderGuard
{
public:
    // Creates the folder if needed, tightens it and its files, and sets the
    // process umask so that files made later (the store's journal) start
    // private. Answers the repairs made, one line each.
    static QStringList secure(const QString& folder);
};

} // namespace NVB::Engine
