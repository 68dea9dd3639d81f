#include "accountstore.h"

#include <QJsonDocument>
#include <QSqlError>
#include <QSqlQuery>
#include <QVariant>

#include "storedatabase.h"
#include "storevalues.h"

namespace NVB::Engine {

using namespace StoreValues;

namespace {

StoredAccount readAccount(const QSqlQuery& q)
{
    StoredAccount a;
    a.id = QUuid(q.value(0).toString());
    a.profile = q.value(1).toString();
    a.displayName = q.value(2).toString();
    a.type = q.value(3).toInt();
    a.prefix = q.value(4).toString();
    a.params = QJsonDocument::fromJson(q.value(5).toByteArray()).object();
    return a;
}

} // namespace

AccountStore::AccountStore(StoreDatabase& database)
    : m_db(database)
{ }

bool AccountStore::saveAccount(const StoredAccount& a)
{
    return m_db.transaction([&] {
        QSqlQuery q(m_db.database());
        q.prepare(QStringLiteral("INSERT OR REPLACE INTO accounts(id, profile, display_name, type, prefix, params) "
                                 "VALUES(?,?,?,?,?,?)"));
        q.addBindValue(text(a.id));
        q.addBindValue(str(a.profile));
        q.addBindValue(str(a.displayName));
        q.addBindValue(a.type);
        q.addBindValue(str(a.prefix));
        q.addBindValue(QString::fromUtf8(QJsonDocument(a.params).toJson(QJsonDocument::Compact)));
        return q.exec() || m_db.fail(QStringLiteral("Cannot save the account: %1").arg(q.lastError().text()));
    });
}

bool AccountStore::removeAccount(const QUuid& id)
{
    return m_db.deleteById(
        QStringLiteral("accounts"), id, QStringLiteral("account"), QStringLiteral("No storage account with the id %1"));
}

std::optional<StoredAccount> AccountStore::account(const QUuid& id)
{
    QSqlQuery q(m_db.database());
    q.prepare(QStringLiteral("SELECT id, profile, display_name, type, prefix, params FROM accounts WHERE id=?"));
    q.addBindValue(text(id));
    if (!q.exec() || !q.next())
        return std::nullopt;
    return readAccount(q);
}

QList<StoredAccount> AccountStore::accounts()
{
    QList<StoredAccount> result;
    QSqlQuery q(m_db.database());
    if (!q.exec(QStringLiteral("SELECT id, profile, display_name, type, prefix, params FROM accounts "
                               "ORDER BY display_name, id")))
        return result;
    while (q.next())
        result.append(readAccount(q));
    return result;
}

} // namespace NVB::Engine
