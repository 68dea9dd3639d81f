#include "backblaze.h"

namespace NVL::Cloud::Info {

BackBlaze::BackBlaze()
    : Base(NVL::Cloud::Type::BackBlaze)
{ }

QUrl BackBlaze::defaultEndpoint() const
{
    return QUrl(QStringLiteral("https://api.backblazeb2.com"));
}

QVector<QPair<QString, QString>> BackBlaze::containerAccessType() const
{
    return {{QStringLiteral("Private"), QStringLiteral("allPrivate")},
        {QStringLiteral("Public"), QStringLiteral("allPublic")}};
}

} // namespace NVL::Cloud::Info
