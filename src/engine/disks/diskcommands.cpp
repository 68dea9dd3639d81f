#include "diskcommands.h"

#include "diskscanner.h"
#include "service/commands/content.h"

namespace NVB::Engine {

namespace Content = NVB::Common::Communication::Commands::Format::Content;

void DiskCommands::add(Engine*, V1Handlers* handlers)
{
    handlers->insert(QString::fromLatin1(Content::GetDiskInfo::Name), [](const QJsonObject&) {
        const auto info = DiskScanner().scan();
        return Outcome::success({{QString::fromLatin1(Content::GetDiskInfo::Reply::Key), info->toXml()}});
    });
}

} // namespace NVB::Engine
