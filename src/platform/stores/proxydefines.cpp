#include "proxydefines.h"

#include "defaultsettings.h"

namespace NVB::defines {

namespace {

QString flag(bool value)
{
    return value ? QStringLiteral("true") : QStringLiteral("false");
}

bool isTrue(const QString& text)
{
    return text.compare(QLatin1String("true"), Qt::CaseInsensitive) == 0;
}

} // namespace

ProxyDefines::ProxySettings ProxyDefines::proxySettings()
{
    const DefaultSettings* store = DefaultSettings::instance();
    ProxySettings settings;
    settings.enabled = isTrue(store->value(QStringLiteral("ProxyEnabled")));
    settings.host = store->value(QStringLiteral("ProxyHost"));
    settings.port = store->value(QStringLiteral("ProxyPort")).toInt();
    settings.useAuthentication = isTrue(store->value(QStringLiteral("ProxyUseAuthentication")));
    settings.user = store->value(QStringLiteral("ProxyUser"));
    settings.passwordChanged = isTrue(store->value(QStringLiteral("ProxyPasswordChanged")));
    settings.password = store->value(QStringLiteral("ProxyPassword"));
    return settings;
}

bool ProxyDefines::setProxySettings(const ProxySettings& settings)
{
    DefaultSettings* store = DefaultSettings::instance();
    // The switch goes last, so that an engine reading between two writes
    // never uses a new switch with an old address.
    bool ok = store->setValue(QStringLiteral("ProxyHost"), settings.host);
    ok = store->setValue(QStringLiteral("ProxyPort"), QString::number(settings.port)) && ok;
    ok = store->setValue(QStringLiteral("ProxyUseAuthentication"), flag(settings.useAuthentication)) && ok;
    ok = store->setValue(QStringLiteral("ProxyUser"), settings.user) && ok;
    ok = store->setValue(QStringLiteral("ProxyPasswordChanged"), flag(settings.passwordChanged)) && ok;
    ok = store->setValue(QStringLiteral("ProxyPassword"), settings.password) && ok;
    ok = store->setValue(QStringLiteral("ProxyEnabled"), flag(settings.enabled)) && ok;
    return ok;
}

bool ProxyDefines::IsProxyEnabled()
{
    return proxySettings().enabled;
}

} // namespace NVB::defines
