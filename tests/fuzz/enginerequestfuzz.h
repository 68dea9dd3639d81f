#pragma once

#include <memory>

#include <QByteArray>
#include <QList>
#include <QStringList>
#include <QTemporaryDir>
#include <QUuid>

namespace NVB::Engine {
class CommandRouter;
class Engine;
class EngineStore;
class Notifier;
} // namespace NVB::Engine

// One fuzz input into the engine's request surface, shared by the libFuzzer
// target and the test that replays kept inputs.
//
// The first byte picks a command (every V1 name, every V2 command the engine
// serves, every V2 command of the catalogue), the rest is its params or
// request as JSON; a body that is a whole frame (it has a "type") goes to
// the router as it is. The engine behind the router keeps its store in a
// temporary folder. The commands that reach outside the process (starting a
// run that copies files, dialling a server for its certificate) only have
// their arguments read.
class EngineRequestFuzz
{
public:
    EngineRequestFuzz();
    ~EngineRequestFuzz();

    // Aborts when an answer breaks the protocol: a request with an id that
    // gets no reply, a reply of the wrong type or to another request.
    void feed(const QByteArray& input);

private:
    void route(const QJsonObject& frame, bool expectReply);
    void readCatalogue(const QUuid& id, const QJsonObject& payload);

    QTemporaryDir m_dir;
    std::unique_ptr<NVB::Engine::EngineStore> m_store;
    std::unique_ptr<NVB::Engine::Notifier> m_notifier;
    std::unique_ptr<NVB::Engine::Engine> m_engine;
    std::unique_ptr<NVB::Engine::CommandRouter> m_router;
    QStringList m_v1;
    QList<QUuid> m_v2;
    QList<QUuid> m_catalogue;
};
