// nvbgui: the console of the backup engine.

#include <QCommandLineParser>

#include "app/application.h"
#include "app/applicationeventcontroller.h"
#include "core/logconfiguration.h"
#include "enginelauncher.h"
#include "mainwindow.h"
#include "masterpasswordgate.h"
#include "models/modelmanager.h"
#include "plantablecreator.h"
#include "storage/storageconnectionsmodelcreator.h"

int main(int argc, char* argv[])
{
    NVB::GUI::Application app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("nvbgui"));
    QApplication::setApplicationDisplayName(NVB::GUI::Application::applicationName());
    QApplication::setApplicationVersion(NVB::GUI::Application::buildVersion());

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("The backup console."));
    parser.addHelpOption();
    parser.addVersionOption();
    const QCommandLineOption noEngine(QStringLiteral("no-engine"),
                                      QStringLiteral("Do not start an engine when none answers."));
    parser.addOption(noEngine);
    parser.process(app);
    NVB::Defines::Log::Configuration::apply();

    QString launch;
    if (!parser.isSet(noEngine))
        NVB::Console::EngineLauncher::ensureEngine(&launch);
    // Plans keep running whoever sits at the console; only the console's
    // own window waits for the master password.
    if (!NVB::Console::MasterPasswordGate::unlock())
        return 1;

    // The shared models must be known before any view asks for them.
    NVB::Console::PlanTableCreator plans;
    NVB::GUI::StorageConnectionsModelCreator storages;
    if (const auto manager = NVB::GUI::ModelManager::instance()) {
        manager->registrateCreator(plans);
        manager->registrateCreator(storages);
    }

    NVB::Console::MainWindow window;
    NVB::GUI::ApplicationEventController events;
    QObject::connect(&events, &NVB::GUI::ApplicationEventController::localManagmentConnected, &window,
                     &NVB::Console::MainWindow::onEngineConnected);
    QObject::connect(&events, &NVB::GUI::ApplicationEventController::localManagmentDisconnected, &window,
                     &NVB::Console::MainWindow::onEngineDisconnected);
    QObject::connect(&events, &NVB::GUI::ApplicationEventController::updateStarted, &window,
                     &NVB::Console::MainWindow::onUpdateStarted);
    events.init();
    if (!launch.isEmpty())
        window.showStatusMessage(launch);
    window.show();
    return app.exec();
}
