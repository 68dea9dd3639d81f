#include "enginerequestfuzz.h"

#include <cstdlib>

#include <QJsonDocument>

#include "commands/commandrouter.h"
#include "commands/paramreader.h"
#include "core/engine.h"
#include "server/notifier.h"
#include "service/v2/commandcatalogue.h"
#include "store/enginestore.h"

namespace V2 = NVB::Common::Communication::V2;
using namespace NVB::Engine;

namespace {

const QString FixedId = QStringLiteral("{6f2c8a0e-4d1b-4c39-9a57-1f0e2d3c4b5a}");

[[noreturn]] void broken(const char* what)
{
    std::fprintf(stderr, "engine request fuzz: %s\n", what);
    std::abort();
}

} // namespace

EngineRequestFuzz::EngineRequestFuzz()
    : m_store(std::make_unique<EngineStore>())
    , m_notifier(std::make_unique<Notifier>())
{
    if (!m_dir.isValid() || !m_store->open(m_dir.filePath(QStringLiteral("engine.db"))))
        broken("cannot open a store");
    m_notifier->setSink([](const QJsonObject&) {});
    m_engine = std::make_unique<Engine>(m_store.get(), m_notifier.get());
    m_router = std::make_unique<CommandRouter>(m_engine.get());
    m_v1 = m_router->v1Commands();
    m_v2 = m_router->v2Commands();
    m_catalogue = V2::CommandCatalogue::instance().ids();
}

EngineRequestFuzz::~EngineRequestFuzz()
{
    m_router.reset();
    m_engine.reset();
}

void EngineRequestFuzz::feed(const QByteArray& input)
{
    if (input.isEmpty())
        return;
    const int selector = quint8(input.at(0));
    const QJsonDocument document = QJsonDocument::fromJson(input.mid(1));
    const QJsonObject body = document.object();
    if (body.contains(QLatin1String("type"))) {
        route(body, false);
        return;
    }
    const int count = m_v1.size() + m_v2.size() + m_catalogue.size();
    const int index = selector % count;
    if (index < m_v1.size()) {
        const QString name = m_v1.at(index);
        // Read as their handlers read them; running them would copy files
        // or dial servers.
        if (name == QLatin1String("PlanExecuteStart") || name == QLatin1String("GetPeerSslCertificate")) {
            ParamReader args(body);
            args.uuid("ID");
            args.boolean("force_full");
            args.string("endpoint");
            return;
        }
        route({{"type", "request"}, {"id", FixedId}, {"command", name}, {"params", body}}, true);
    } else if (index < m_v1.size() + m_v2.size()) {
        const QUuid id = m_v2.at(index - m_v1.size());
        route({{"type", "request2"}, {"id", FixedId}, {"command_id", id.toString()}, {"request", body}}, true);
    } else {
        readCatalogue(m_catalogue.at(index - m_v1.size() - m_v2.size()), body);
    }
}

void EngineRequestFuzz::route(const QJsonObject& frame, bool expectReply)
{
    const QJsonObject reply = m_router->handle(frame);
    if (expectReply && reply.isEmpty())
        broken("a request with an id got no reply");
    if (reply.isEmpty())
        return;
    const QString type = reply.value(QLatin1String("type")).toString();
    if (type != QLatin1String("reply") && type != QLatin1String("reply2"))
        broken("a reply of an unknown type");
    if (reply.value(QLatin1String("id")) != frame.value(QLatin1String("id")))
        broken("a reply to another request");
}

void EngineRequestFuzz::readCatalogue(const QUuid& id, const QJsonObject& payload)
{
    // Requests are what the engine reads, responses what the console reads;
    // what was read must write something that reads again the same way.
    const auto& catalogue = V2::CommandCatalogue::instance();
    if (const auto request = catalogue.createRequest(id); request && request->fromJson(payload)) {
        const QJsonObject written = request->toJson();
        const auto again = catalogue.createRequest(id);
        if (!again->fromJson(written) || again->toJson() != written)
            broken("a V2 request does not survive a round trip");
    }
    if (const auto response = catalogue.createResponse(id); response && response->fromJson(payload)) {
        const QJsonObject written = response->toJson();
        const auto again = catalogue.createResponse(id);
        if (!again->fromJson(written) || again->toJson() != written)
            broken("a V2 response does not survive a round trip");
    }
}
