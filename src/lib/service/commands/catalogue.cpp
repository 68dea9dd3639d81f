#include "catalogue.h"

#include <QSet>

#include "service/commands/content.h"
#include "service/commands/history.h"
#include "service/commands/license.h"
#include "service/commands/plan.h"
#include "service/commands/snapshot.h"
#include "service/commands/storage.h"
#include "service/commands/system.h"

namespace NVB::Common::Communication::Commands {

const QStringList& Catalogue::names()
{
    static const QStringList list {QLatin1String(Format::Plan::ExecuteStart::Name),
        QLatin1String(Format::Plan::ExecuteStop::Name), QLatin1String(Format::Plan::GetInfo::Name),
        QLatin1String(Format::Plan::GetList::Name), QLatin1String(Format::Plan::GetPlansXML::Name),
        QLatin1String(Format::Plan::GetUsedShare::Name), QLatin1String(Format::Plan::GetXML::Name),
        QLatin1String(Format::Plan::Remove::Name), QLatin1String(Format::Plan::Update::Name),
        QLatin1String(Format::History::ByFiles::Name), QLatin1String(Format::History::ByPlan::Name),
        QLatin1String(Format::Content::DecryptDiskImageContent::Name),
        QLatin1String(Format::Content::GetContentType::Name), QLatin1String(Format::Content::GetDiskImageContent::Name),
        QLatin1String(Format::Content::GetDiskInfo::Name), QLatin1String(Format::Content::GetFolder::Name),
        QLatin1String(Format::Content::GetFolderMultiPart::Name),
        QLatin1String(Format::Content::GetRestoreContent::Name),
        QLatin1String(Format::Content::GetRestoreContentByName::Name),
        QLatin1String(Format::Content::GetRestoreContentManualMode::Name),
        QLatin1String(Format::Storage::DeleteFileSystem::Name), QLatin1String(Format::Storage::EditAccount::Name),
        QLatin1String(Format::Storage::GetConnection::Name), QLatin1String(Format::Storage::GetConnectionById::Name),
        QLatin1String(Format::Storage::GetDestinationInfo::Name),
        QLatin1String(Format::Storage::GetMnsDestinationPrefixes::Name),
        QLatin1String(Format::Storage::GetSynchronizeRepositoryList::Name),
        QLatin1String(Format::Storage::MnsDataDeletingInfo::Name), QLatin1String(Format::Storage::RemoveFiles::Name),
        QLatin1String(Format::Storage::RemoveFilesCancel::Name), QLatin1String(Format::Storage::SaveStorage::Name),
        QLatin1String(Format::Storage::SynchronizeRepository::Name),
        QLatin1String(Format::Storage::SynchronizeRepositoryCancel::Name),
        QLatin1String(Format::System::AppendToSslStorage::Name), QLatin1String(Format::System::ChangeCommonMode::Name),
        QLatin1String(Format::System::ExportConfiguration::Name), QLatin1String(Format::System::ForceUpdate::Name),
        QLatin1String(Format::System::GetAndApplyBackupConfiguration::Name),
        QLatin1String(Format::System::GetAndApplyRemoteDeployConfigurations::Name),
        QLatin1String(Format::System::GetPeerSslCertificate::Name), QLatin1String(Format::System::GetSettings::Name),
        QLatin1String(Format::System::ImportConfiguration::Name),
        QLatin1String(Format::System::MoveDatabase::Name),
        QLatin1String(Format::System::ReadFromSslStorage::Name),
        QLatin1String(Format::System::RemoveFromSslStorage::Name),
        QLatin1String(Format::System::SendDiagnosticLog::Name), QLatin1String(Format::System::UninstallClient::Name),
        QLatin1String(Format::System::UninstallNotification::Name),
        QLatin1String(Format::System::WriteToSslStorage::Name), QLatin1String(Format::Snapshot::Install::Name),
        QLatin1String(Format::Snapshot::IsInit::Name), QLatin1String(Format::Snapshot::Remove::Name),
        QLatin1String(Format::Snapshot::Take::Name), QLatin1String(Format::License::ChangeAccount::Name),
        QLatin1String(Format::License::ChangeUserPassword::Name), QLatin1String(Format::License::CheckUserExists::Name),
        QLatin1String(Format::License::RegenerateHID::Name), QLatin1String(Format::License::UserSignUp::Name)};
    return list;
}

bool Catalogue::contains(const QString& name)
{
    static const QSet<QString> set(names().cbegin(), names().cend());
    return set.contains(name);
}

} // namespace NVB::Common::Communication::Commands
