#pragma once

#include <QUuid>

#include "service/uuidliteral.h"

// The type ids of the V2 notifications, the one place they are fixed. The
// engine sends these; docs/protocol.md lists them too. Never change a value:
// a console and an engine of different builds must keep understanding each
// other.
namespace NVB::Common::Communication::V2::Notification::TypeIds {

inline constexpr QUuid AddedNewBunch = uuidLiteral("{C5B10568-6903-5BB9-9B33-DDFF7F1DB568}");
inline constexpr QUuid AddedNewConnection = uuidLiteral("{5A84813D-63FC-5617-9209-D380368272F5}");
inline constexpr QUuid AddedNewGeneration = uuidLiteral("{4DD5C16F-0925-5DFF-B929-BA945B27A919}");
inline constexpr QUuid AddedNewPlan = uuidLiteral("{9865386C-88B8-5DB3-9491-AC3190ADF350}");
inline constexpr QUuid AddedNewRestorePoint = uuidLiteral("{D52BD32A-79E4-5F67-B326-741CC4FC1DB6}");
inline constexpr QUuid DeepSyncError = uuidLiteral("{EE427DC3-400A-5BF8-A6D7-EE637920719F}");
inline constexpr QUuid DeepSyncFinished = uuidLiteral("{BC02C05A-5E99-5847-A88C-40D6C2BD6907}");
inline constexpr QUuid DeepSyncStarted = uuidLiteral("{F2FAFE43-26BB-51A3-8C5E-29B556DB710F}");
inline constexpr QUuid DeepSyncStatus = uuidLiteral("{486F11B7-CFD0-531E-AD3F-DF6583EB41B6}");
inline constexpr QUuid PlanProgress = uuidLiteral("{91C186A4-ADA6-53AF-859D-DA002D6A840B}");
inline constexpr QUuid RemoveNbfDataStatus = uuidLiteral("{22CA330F-06EB-51D7-9AE5-B65019E9A0D8}");
inline constexpr QUuid RemoveRestorePoint = uuidLiteral("{DE734935-3CC5-51C7-9B54-C9EA09C02C50}");
inline constexpr QUuid RemovedBunch = uuidLiteral("{B221F654-9170-532A-810F-CB975735C8DC}");
inline constexpr QUuid RemovedConnection = uuidLiteral("{DADFA655-0AC3-56E5-9A58-396D88D3ED74}");
inline constexpr QUuid RemovedGeneration = uuidLiteral("{B1C5E91F-B5C4-5D5D-95DB-CA18D624BB5F}");
inline constexpr QUuid RemovedPlan = uuidLiteral("{00DB0EE1-2C35-50CA-BFC6-768E345560A6}");
inline constexpr QUuid StartedPlan = uuidLiteral("{96018C7F-07B2-503C-8AE4-7075665B79ED}");
inline constexpr QUuid StoppedPlan = uuidLiteral("{EBE0C73C-456C-5338-8A03-E22D6139F5D8}");
inline constexpr QUuid SynchronizeRepositoryError = uuidLiteral("{0293F908-7210-5D9A-B7AB-FDECE9A489AC}");
inline constexpr QUuid SynchronizeRepositoryFinished = uuidLiteral("{DF727DA1-26A2-5FFF-8A5D-CDA1BBEC7FF6}");
inline constexpr QUuid SynchronizeRepositoryStarted = uuidLiteral("{868B88BF-9BC0-502B-90DC-FFE13EFD7455}");
inline constexpr QUuid SynchronizeRepositoryStatus = uuidLiteral("{EA2D5885-C09C-59CA-A344-B838AD0CD9DC}");
inline constexpr QUuid UpdateAllConnection = uuidLiteral("{1A23B7FC-E995-5E5F-94D5-47D91DEA2D92}");
inline constexpr QUuid UpdateBunch = uuidLiteral("{45F8CE9D-01FE-5705-8930-57B2412D23BE}");
inline constexpr QUuid UpdateConnection = uuidLiteral("{CF642F62-B59E-59FA-863B-714DC6E02AB6}");
inline constexpr QUuid UpdateGeneration = uuidLiteral("{FD82B9EA-0373-5595-849B-36CE977BF970}");
inline constexpr QUuid UpdatePlan = uuidLiteral("{660AD108-B3E3-52CD-A51F-867C7572ED5C}");
inline constexpr QUuid UpdateRestorePoint = uuidLiteral("{D6C0964E-02CD-5F2B-90DF-6A3454A18822}");

} // namespace NVB::Common::Communication::V2::Notification::TypeIds
