#pragma once

#include <QDialog>

class QTabWidget;

namespace NVB::GUI {

namespace Settings {
class Advanced;
class Application;
class Backup;
class License;
class Network;
} // namespace Settings

// Every setting of the product in tabs. Nothing is applied on closing:
// each control has written its value the moment it changed.
class SettingDialog : public QDialog
{
    Q_OBJECT
public:
    explicit SettingDialog(QWidget* parent = nullptr);

    QTabWidget* tabs() const { return m_tabs; }
    Settings::Backup* backupPage() const { return m_backup; }
    Settings::Network* networkPage() const { return m_network; }
    Settings::Application* applicationPage() const { return m_application; }
    Settings::Advanced* advancedPage() const { return m_advanced; }
    // Null outside the standalone edition.
    Settings::License* licensePage() const { return m_license; }

signals:
    void meExec();
    void ForceClose();
    void onAccountChanged();

public slots:
    int exec() override;

private:
    QTabWidget* m_tabs;
    Settings::Backup* m_backup;
    Settings::Network* m_network;
    Settings::Application* m_application;
    Settings::Advanced* m_advanced;
    Settings::License* m_license = nullptr;
};

} // namespace NVB::GUI
