#include "format.h"

namespace NVB::Common::Communication::Notification::Format {

QList<QUuid> allTypes()
{
    return {Plan::Add::Type, Plan::Remove::Type, Plan::StateChange::Type, Plan::Update::Type,
        Snapshot::InstallStatus::Type, Storage::Add::Type, Storage::Remove::Type, Storage::RemoveFilesStatus::Type,
        Storage::SynchronizeRepositoryError::Type, Storage::SynchronizeRepositoryFinished::Type,
        Storage::SynchronizeRepositoryStarted::Type, Storage::SynchronizeRepositoryStatus::Type, Storage::Update::Type,
        Storage::UpdateConnections::Type, System::CheckLive::Type, System::CloseAll::Type, System::Connect::Type,
        System::DefaultSettingsChanged::Type, System::Disconnect::Type, System::RebrandingOptionsChanged::Type,
        System::SslStorageChange::Type, System::Update::Type, System::UpdateProgress::Type, System::UpdateStart::Type,
        Worker::ReportProgress2::Type, Worker::ReportProgress::Type};
}

} // namespace NVB::Common::Communication::Notification::Format
