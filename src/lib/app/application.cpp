#include "application.h"

#include <QCoreApplication>
#include <QDesktopServices>
#include <QProcess>
#include <QScopedPointer>

#include "core/apppath.h"
#include "core/defines.h"
#include "core/filesoperations.h"
#include "core/licenserestrictions.h"
#include "core/nvldebug.h"
#include "core/providerdefines.h"
#include "stores/rebranding.h"
#include "stores/rebrandingkeys.h"
#include "systemurlopenhandler.h"

namespace NVB::GUI {

namespace Keys = NVB::Defines::RebrandingKeys;

namespace {

QString rebranding(const char* key)
{
    return NVB::Defines::Rebranding::instance()->value(key).toString();
}

constexpr char FreeEdition[] = "Free";
constexpr char FullEdition[] = "Full";

} // namespace

Application::Application(int& argc, char** argv, int flags)
    : QApplication(argc, argv, flags)
{ }

bool Application::isStandalon()
{
    return SHARED::defines::common::is_standalone();
}

bool Application::isMns()
{
    return SHARED::defines::common::is_mns();
}

QString Application::applicationName()
{
    return rebranding(Keys::General::ProductName);
}

QString Application::companyName()
{
    return rebranding(Keys::General::CompanyName);
}

QString Application::copyright()
{
    return rebranding(Keys::General::CopyrightText);
}

QString Application::website()
{
    return rebranding(Keys::General::WebSite);
}

QString Application::buildVersion()
{
    return NVB::defines::ProviderDefines::BuildVersion();
}

QString Application::getSharePath()
{
    return NVB::Defines::AppPath::to().share();
}

QString Application::getImagesPath()
{
    if (isMns())
        return NVB::Defines::AppPath::to().guiImageDir();
    return getSharePath() + QStringLiteral("/images");
}

QString Application::supportEmail()
{
    return SHARED::functions::files_operations::get_attrib_from_file(
        SHARED::defines::Path::ETC::CONFIG::nvbBackup_conf(), QStringLiteral("supportEmail"));
}

void Application::restart()
{
    const QString command = QStringLiteral("\"%1%2\"").arg(SHARED::defines::Path::bin_path(), QStringLiteral("nvbgui"));
    // The one-string form of startDetached: the text is split like a shell
    // would, so the quotes keep a program path with blanks whole.
    const QStringList parts = QProcess::splitCommand(command);
    if (!parts.isEmpty())
        QProcess::startDetached(parts.first(), parts.mid(1));
    QCoreApplication::quit();
}

void Application::openURL(const QUrl& url)
{
    QScopedPointer<Handlers::SystemUrlOpenHandler, QScopedPointerDeleteLater> handler(
        new Handlers::SystemUrlOpenHandler);
    const QStringList schemes {QStringLiteral("file"), QStringLiteral("http"), QStringLiteral("https")};
    for (const QString& scheme : schemes)
        QDesktopServices::setUrlHandler(scheme, handler.data(), "handleUrl");
    QDesktopServices::openUrl(url);
    for (const QString& scheme : schemes)
        QDesktopServices::unsetUrlHandler(scheme);
}

QString Application::licenseMail()
{
    return {};
}

int Application::trialExpiredDelay()
{
    return 0;
}

QString Application::maintenanceExpires()
{
    return {};
}

void Application::buyProduct()
{
    const QString site = website();
    if (site.isEmpty()) {
        NVL::NvlDebug(QStringLiteral("NVB")).warning() << QStringLiteral("No web site to buy the product from");
        return;
    }
    openURL(QUrl::fromUserInput(site));
}

void Application::buyMaintenance()
{
    buyProduct();
}

QString Application::licenseType()
{
    return QString::fromLatin1(NVB::License::LicenseRestrictions::isFreeEdition() ? FreeEdition : FullEdition);
}

QString Application::standaloneLicenseType()
{
    return licenseType();
}

bool Application::isLicense(QWidget* parent)
{
    Q_UNUSED(parent)
    return true;
}

bool startStdLicenseWizard()
{
    return true;
}

bool licenseStandaloneVerify(QWidget* parent)
{
    return Application::isLicense(parent);
}

bool licenseMnsVerify(QWidget* parent)
{
    return Application::isLicense(parent);
}

} // namespace NVB::GUI
