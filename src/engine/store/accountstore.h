#pragma once

#include <optional>

#include <QList>
#include <QUuid>

#include "storedaccount.h"

namespace NVB::Engine {

class StoreDatabase;

// The `accounts` table: storage accounts as the console saved them.
class AccountStore
{
public:
    explicit AccountStore(StoreDatabase& database);

    bool saveAccount(const StoredAccount& account);
    bool removeAccount(const QUuid& id);
    std::optional<StoredAccount> account(const QUuid& id);
    QList<StoredAccount> accounts();

private:
    StoreDatabase& m_db;
};

} // namespace NVB::Engine
