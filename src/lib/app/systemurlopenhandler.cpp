#include "systemurlopenhandler.h"

#include <QDesktopServices>

namespace NVB::GUI::Handlers {

namespace {

int g_handled = 0;

// An environment variable's value, remembering whether it was set at all, so
// that an unset variable is unset again afterwards rather than left empty.
struct SavedVariable
{
    explicit SavedVariable(const char* name)
        : name(name)
        , wasSet(qEnvironmentVariableIsSet(name))
        , value(qgetenv(name))
    { }
    void restore() const
    {
        if (wasSet)
            qputenv(name, value);
        else
            qunsetenv(name);
    }
    const char* name;
    bool wasSet;
    QByteArray value;
};

} // namespace

SystemUrlOpenHandler::SystemUrlOpenHandler(QObject* parent, Opener opener)
    : QObject(parent)
    , m_opener(opener ? std::move(opener) : Opener([](const QUrl& url) { return QDesktopServices::openUrl(url); }))
{ }

int SystemUrlOpenHandler::handledCount()
{
    return g_handled;
}

void SystemUrlOpenHandler::handleUrl(const QUrl& url)
{
    ++g_handled;
    const SavedVariable libraryPath("LD_LIBRARY_PATH");
    const SavedVariable path("PATH");
    qputenv("LD_LIBRARY_PATH", "/usr/lib:/usr/local/lib");
    qputenv("PATH", "/usr/bin:/usr/local/bin");
    m_opener(url);
    libraryPath.restore();
    path.restore();
}

} // namespace NVB::GUI::Handlers
