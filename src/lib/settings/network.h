#pragma once

#include <QWidget>

class QCheckBox;
class QToolButton;

namespace NVB::GUI::Settings {

class Bandwidth;
class ConnectionOptions;
class Proxy;

// The "Network" tab: proxy, certificate checks, speed limits and retries.
class Network : public QWidget
{
    Q_OBJECT
public:
    explicit Network(QWidget* parent = nullptr);

    Proxy* proxy() const { return m_proxy; }
    QCheckBox* ignoreSslBox() const { return m_ignoreSsl; }
    QToolButton* sslCertificatesButton() const { return m_sslCertificates; }
    Bandwidth* bandwidth() const { return m_bandwidth; }
    ConnectionOptions* connectionOptions() const { return m_connection; }

public slots:
    void loadSettings();
    void saveSettings();
    void onViewSslCertificates();

private:
    Proxy* m_proxy;
    QCheckBox* m_ignoreSsl = nullptr;
    QToolButton* m_sslCertificates = nullptr;
    Bandwidth* m_bandwidth;
    ConnectionOptions* m_connection;
};

} // namespace NVB::GUI::Settings
