#pragma once

#include <QStringList>
#include <QVector>

namespace NVB::Engine {

class StoreDatabase;

// The store's schema as numbered steps. A database records the last step it
// took in PRAGMA user_version; opening it takes every later step, each in a
// transaction of its own, so a store written by any earlier engine opens. A
// change to the schema is a new step at the end, never an edit of one that
// shipped.
class StoreMigrations
{
public:
    struct Migration
    {
        int version;
        QStringList statements;
    };

    static const QVector<Migration>& all();
    static int latestVersion();
    // False with the reason in the database's lastError().
    static bool apply(StoreDatabase& database);
};

} // namespace NVB::Engine
