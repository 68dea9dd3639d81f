#pragma once

#include <utility>

#include <QWidget>

class QCheckBox;
class QLabel;
class QPushButton;
class QSpinBox;
class QTimer;
class QToolButton;

namespace NVB::GUI::Settings {

// The "Application" tab: the console's master password, the engine's store
// file, and the ports of the engine's web interface.
class Application : public QWidget
{
    Q_OBJECT
public:
    class MoveDatabase;

    explicit Application(QWidget* parent = nullptr);

    // False with the message for a port out of range or already taken.
    static std::pair<bool, QString> checkTcpPort(int port);
    QString remoteAccessDescription() const;

    QCheckBox* masterPasswordBox() const { return m_masterPassword; }
    QToolButton* changeMasterPasswordButton() const { return m_changeMasterPassword; }
    QLabel* databaseLocationLabel() const { return m_location; }
    QLabel* databaseSizeLabel() const { return m_size; }
    QPushButton* moveButton() const { return m_move; }
    QLabel* locationLabel() const { return m_location; }
    QPushButton* shrinkButton() const { return m_shrink; }
    QPushButton* synchronizeButton() const { return m_synchronize; }
    QCheckBox* httpBox() const { return m_useHttp; }
    QSpinBox* httpPortBox() const { return m_httpPort; }
    QCheckBox* httpsBox() const { return m_useHttps; }
    QSpinBox* httpsPortBox() const { return m_httpsPort; }
    QLabel* descriptionLabel() const { return m_description; }
    // Whether the page waits for the engine to open or close a port.
    bool isWaitingForEngine() const { return m_waitTimer != nullptr; }

signals:
    void ForceClose();
    void defaultSettingsChanged();
    // A web access change was refused with this message.
    void webAccessRefused(const QString& message);

public slots:
    void loadSettings();
    void onSaveSettings();
    void onMoveDatabaseClicked();
    void onShrinkClicked();
    void onSincAccount();
    void onSetMasterPasswordClicked();
    void onChangeMasterPasswordButtonClicked();

protected slots:
    void onRemoteAccessHttpChanged();
    void onRemoteAccessHttpsChanged();

private:
    void saveSettings();
    void updateMasterPasswordUI();
    void loadRemoteAccessSettings();
    void initRemoteAccessSpinBox(QSpinBox* box);
    void updateWebAccessSettings(bool http, bool enabled, int port);
    void webAccessSettings(bool http, bool& enabled, int& port) const;
    void setWebAccessSettings(bool http, bool enabled, int port);
    void waitWebAccessSettingsApplied(bool enabled, bool oldEnabled, int port, int oldPort);
    void lockWebAccessUI(bool lock);
    void shrinkExec();

    const int m_minPort = 0;
    const int m_maxPort = 65535;
    QCheckBox* m_masterPassword;
    QToolButton* m_changeMasterPassword;
    QLabel* m_location;
    QLabel* m_size;
    QPushButton* m_move;
    QPushButton* m_shrink;
    QPushButton* m_synchronize;
    QLabel* m_description;
    QCheckBox* m_useHttp;
    QSpinBox* m_httpPort;
    QCheckBox* m_useHttps;
    QSpinBox* m_httpsPort;
    QTimer* m_httpTimer;
    QTimer* m_httpsTimer;
    QTimer* m_waitTimer = nullptr;
};

} // namespace NVB::GUI::Settings
