// nvbengine: the reference engine. Serves the console's channel on a local
// socket, keeps plans, accounts and history in its store, and runs plans.

#include <cstdio>

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QTimer>

#include "channel/socketpath.h"
#include "commands/commandrouter.h"
#include "core/apppath.h"
#include "core/engine.h"
#include "core/logconfiguration.h"
#include "core/nvldebug.h"
#include "core/providerdefines.h"
#include "server/engineserver.h"
#include "server/instancelock.h"
#include "server/notifier.h"
#include "server/signalwatcher.h"
#include "settings/settingswatcher.h"
#include "stores/defaultsettings.h"
#include "web/webaccess.h"
#include "store/datafolderguard.h"
#include "store/enginestore.h"
#include "store/storefile.h"

namespace {

int fail(const QString& message)
{
    NVL::NvlDebug(QStringLiteral("NVB")).error() << message;
    std::fprintf(stderr, "nvbengine: %s\n", qUtf8Printable(message));
    return 1;
}

} // namespace

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("nvbengine"));
    QCoreApplication::setApplicationVersion(NVB::defines::ProviderDefines::BuildVersion());

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("The backup engine: serves the console and runs backup plans."));
    parser.addHelpOption();
    parser.addVersionOption();
    const QCommandLineOption socketOption(QStringLiteral("socket"), QStringLiteral("Listen on <path>."),
                                          QStringLiteral("path"));
    const QCommandLineOption dataOption(QStringLiteral("data"), QStringLiteral("Keep the store in <directory>."),
                                        QStringLiteral("directory"));
    parser.addOption(socketOption);
    parser.addOption(dataOption);
    parser.process(app);
    NVB::Defines::Log::Configuration::apply();

    const QString dataDirectory =
        parser.isSet(dataOption) ? parser.value(dataOption) : NVB::Defines::AppPath::to().data();
    const QString socketPath =
        parser.isSet(socketOption) ? parser.value(socketOption) : NVB::Channel::SocketPath::engine();

    NVB::Engine::DataFolderGuard::secure(dataDirectory);
    NVB::Engine::InstanceLock lock(dataDirectory);
    QString error;
    if (!lock.acquire(&error))
        return fail(error);

    if (!NVB::Engine::StoreFile::adoptOldName(dataDirectory, &error))
        return fail(error);
    NVB::Engine::EngineStore store;
    const QString storePath = NVB::Engine::StoreFile::location(
        dataDirectory, NVB::DefaultSettings::instance()->value(QStringLiteral("DatabasePath")));
    if (!store.open(storePath))
        return fail(store.lastError());

    NVB::Engine::Notifier notifier;
    NVB::Engine::Engine engine(&store, &notifier);
    NVB::Engine::CommandRouter router(&engine);
    NVB::Engine::EngineServer server(
        [&router](const QJsonObject& request, const NVB::Engine::EngineServer::Reply& reply) {
            router.handle(request, reply);
        });
    notifier.setSink([&server](const QJsonObject& frame) { server.broadcast(frame); });
    NVB::Engine::SettingsWatcher settingsWatcher(NVB::DefaultSettings::instance(), &notifier);
    settingsWatcher.applyAll();
    if (!server.listen(socketPath, &error))
        return fail(error);

    NVB::Engine::SignalWatcher signalWatcher;
    QObject::connect(&signalWatcher, &NVB::Engine::SignalWatcher::terminationRequested, &app, [&](int signal) {
        NVL::NvlDebug(QStringLiteral("NVB")).info() << QStringLiteral("Stopping on signal %1").arg(signal);
        engine.shutdown();
        // Give the sockets a turn of the loop to send CloseAll before they close.
        QTimer::singleShot(100, &app, [&] {
            server.close();
            QCoreApplication::quit();
        });
    });

    engine.start();
    NVB::Engine::WebAccess webAccess(&engine, NVB::DefaultSettings::instance(), dataDirectory);
    QObject::connect(&settingsWatcher, &NVB::Engine::SettingsWatcher::changed, &webAccess,
                     &NVB::Engine::WebAccess::onSettingsChanged);
    webAccess.apply();
    NVL::NvlDebug(QStringLiteral("NVB")).info()
        << QStringLiteral("Engine %1 serving %2 with the store %3")
               .arg(NVB::defines::ProviderDefines::BuildVersion(), socketPath, store.filePath());
    return app.exec();
}
