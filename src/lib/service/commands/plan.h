#pragma once

// V1 commands about plans: run, stop, remove, edit and read them.
// Each command has its wire name, the keys of its arguments (Request, put
// under "params") and the keys of its reply (Reply, read under "data").
namespace NVB::Common::Communication::Commands::Format::Plan {

namespace DataType {
namespace Info {
inline constexpr char ForceFullSupported[] = "ForceFullSupported";
inline constexpr char FullSchedule[] = "FullSchedule";
inline constexpr char ID[] = "ID";
inline constexpr char LastDuration[] = "LastDuration";
inline constexpr char LastFailedCount[] = "LastFailedCount";
inline constexpr char LastFileCount[] = "LastFileCount";
inline constexpr char LastFileSize[] = "LastFileSize";
inline constexpr char LastRunMessage[] = "LastRunMessage";
inline constexpr char LastRunStatus[] = "LastRunStatus";
inline constexpr char LastRunTime[] = "LastRunTime";
inline constexpr char LastUploadedCount[] = "LastUploadedCount";
inline constexpr char LastUploadedSize[] = "LastUploadedSize";
inline constexpr char Name[] = "Name";
inline constexpr char NextRun[] = "NextRun";
inline constexpr char NextRunFull[] = "NextRunFull";
inline constexpr char NextRunReal[] = "NextRunReal";
inline constexpr char ProgressSteps[] = "ProgressSteps";
inline constexpr char Schedule[] = "Schedule";
inline constexpr char Status[] = "Status";
inline constexpr char StorageId[] = "StorageId";
inline constexpr char SubType[] = "SubType";
inline constexpr char Type[] = "Type";
} // namespace Info
} // namespace DataType
namespace ExecuteStart {
inline constexpr char Name[] = "PlanExecuteStart";
namespace Reply {
namespace Value {
inline constexpr char Error[] = "error";
inline constexpr char Success[] = "success";
} // namespace Value
} // namespace Reply
namespace Request {
inline constexpr char ForceFull[] = "force_full";
inline constexpr char ID[] = "ID";
inline constexpr char Profile[] = "profile";
} // namespace Request
} // namespace ExecuteStart
namespace ExecuteStop {
inline constexpr char Name[] = "PlanExecuteStop";
namespace Reply {
namespace Value {
inline constexpr char Error[] = "error";
inline constexpr char Success[] = "success";
} // namespace Value
} // namespace Reply
namespace Request {
inline constexpr char ID[] = "ID";
inline constexpr char Profile[] = "profile";
} // namespace Request
} // namespace ExecuteStop
namespace GetInfo {
inline constexpr char Name[] = "PlanGetInfo";
namespace Reply {
inline constexpr char Key[] = "planInfo";
} // namespace Reply
namespace Request {
inline constexpr char Id[] = "id";
inline constexpr char Profile[] = "profile";
} // namespace Request
} // namespace GetInfo
namespace GetList {
inline constexpr char Name[] = "PlanGetList";
namespace Reply {
inline constexpr char Key[] = "planList";
} // namespace Reply
namespace Request {
inline constexpr char Profile[] = "profile";
} // namespace Request
} // namespace GetList
namespace GetPlansXML {
inline constexpr char Name[] = "GetPlansXML";
namespace Request {
inline constexpr char Profile[] = "profile";
} // namespace Request
} // namespace GetPlansXML
namespace GetUsedShare {
inline constexpr char Name[] = "GetUsedShare";
namespace Reply {
inline constexpr char List[] = "list";
} // namespace Reply
} // namespace GetUsedShare
namespace GetXML {
inline constexpr char Name[] = "PlanGetXML";
namespace Reply {
inline constexpr char Key[] = "planXML";
} // namespace Reply
namespace Request {
inline constexpr char ID[] = "ID";
inline constexpr char Profile[] = "profile";
} // namespace Request
} // namespace GetXML
namespace Remove {
inline constexpr char Name[] = "PlanRemove";
namespace Reply {
namespace Value {
inline constexpr char Error[] = "error";
inline constexpr char Success[] = "success";
} // namespace Value
} // namespace Reply
namespace Request {
inline constexpr char ID[] = "ID";
inline constexpr char Profile[] = "profile";
} // namespace Request
} // namespace Remove
namespace Update {
inline constexpr char Name[] = "CommonPlanEdit";
namespace Reply {
namespace Value {
inline constexpr char Error[] = "error";
inline constexpr char Success[] = "success";
} // namespace Value
} // namespace Reply
namespace Request {
inline constexpr char ID[] = "ID";
inline constexpr char Profile[] = "profile";
inline constexpr char XML[] = "planXML";
} // namespace Request
} // namespace Update

} // namespace NVB::Common::Communication::Commands::Format::Plan
