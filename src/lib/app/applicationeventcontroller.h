#pragma once

#include <QJsonDocument>
#include <QObject>

namespace NVB::GUI {

// Turns service events into application-wide reactions: the engine's
// CloseAll quits the console, UpdateStart announces an update, and the state
// of the engine connection is passed on.
class ApplicationEventController : public QObject
{
    Q_OBJECT
public:
    explicit ApplicationEventController(QObject* parent = nullptr);

    // Connects to the service singletons that exist; a second call does
    // nothing.
    void init();
    bool isInited() const { return m_inited; }

signals:
    void updateStarted();
    void localManagmentConnected();
    void localManagmentDisconnected();

private slots:
    void onNotification(const QJsonDocument& document);
    void onLocalManagmentStatusChanged();

private:
    bool m_inited;
};

} // namespace NVB::GUI
