#pragma once

#include <QApplication>
#include <QString>
#include <QUrl>

class QWidget;

namespace NVB::GUI {

// The console's application object. It holds nothing of its own: the edition,
// product texts and paths come from the installation and the rebranding
// values, so every getter is static and may be called before an instance
// exists.
class Application : public QApplication
{
    Q_OBJECT
public:
    Application(int& argc, char** argv, int flags = ApplicationFlags);

    static bool isStandalon();
    static bool isMns();

    static QString applicationName();
    static QString companyName();
    static QString copyright();
    static QString website();
    static QString buildVersion();
    static QString getSharePath();
    static QString getImagesPath();
    static QString supportEmail();

    // Starts a new console detached, then quits this one.
    static void restart();
    // Opens a URL with the system's viewer, in an environment without our
    // private library path.
    static void openURL(const QUrl& url);

    // Licence members. This build carries no licence server and no licence
    // file: every installation runs as the free edition without a time limit,
    // so the checks answer "licensed" and the purchase links open the
    // product's web site.
    static QString licenseMail();
    static int trialExpiredDelay();
    static QString maintenanceExpires();
    static void buyProduct();
    static QString licenseType();
    static QString standaloneLicenseType();
    static bool isLicense(QWidget* parent);

public slots:
    static void buyMaintenance();
};

// Licence entry points; see the licence members above.
bool startStdLicenseWizard();
bool licenseStandaloneVerify(QWidget* parent);
bool licenseMnsVerify(QWidget* parent);

} // namespace NVB::GUI
