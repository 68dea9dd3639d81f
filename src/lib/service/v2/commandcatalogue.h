#pragma once

#include <functional>

#include <QHash>
#include <QList>
#include <QSharedPointer>
#include <QString>
#include <QUuid>

#include "service/v2/command.h"

namespace NVB::Common::Communication::V2 {

// Every V2 command by its id, with makers of its typed request and response.
// The console reads responses through it, the engine reads requests.
class CommandCatalogue
{
public:
    struct Entry
    {
        QUuid id;
        QString name;
        std::function<QSharedPointer<Command::Request>()> makeRequest;
        std::function<QSharedPointer<Command::Response>()> makeResponse;
    };

    static const CommandCatalogue& instance();

    bool contains(const QUuid& id) const { return m_entries.contains(id); }
    // The command's name, e.g. "Repository::GetBunch"; empty when unknown.
    QString name(const QUuid& id) const;
    QList<QUuid> ids() const { return m_order; }

    // Null for an unknown id.
    QSharedPointer<Command::Request> createRequest(const QUuid& id) const;
    QSharedPointer<Command::Response> createResponse(const QUuid& id) const;

private:
    CommandCatalogue();

    template<typename Request, typename Response> void add(const QUuid& id, const QString& name)
    {
        m_order.append(id);
        m_entries.insert(id,
            Entry {id, name, [] { return QSharedPointer<Command::Request>(new Request); },
                [] { return QSharedPointer<Command::Response>(new Response); }});
    }

    QHash<QUuid, Entry> m_entries;
    QList<QUuid> m_order;
};

} // namespace NVB::Common::Communication::V2
