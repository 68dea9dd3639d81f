#pragma once

#include <functional>

#include <QObject>
#include <QUrl>

namespace NVB::GUI::Handlers {

// Opens URLs for Application::openURL with the system's default search paths,
// so that a browser or viewer never inherits the console's private library
// path.
class SystemUrlOpenHandler : public QObject
{
    Q_OBJECT
public:
    using Opener = std::function<bool(const QUrl&)>;

    // The opener does the actual opening; by default QDesktopServices, whose
    // own re-entry guard sends a call made from inside a URL handler the
    // system's way instead of back to us.
    explicit SystemUrlOpenHandler(QObject* parent = nullptr, Opener opener = {});

    // How many URLs handlers of this class have opened in this process.
    static int handledCount();

public slots:
    void handleUrl(const QUrl& url);

private:
    Opener m_opener;
};

} // namespace NVB::GUI::Handlers
