#pragma once

// V1 commands about the run history, by plan and by file.
// Each command has its wire name, the keys of its arguments (Request, put
// under "params") and the keys of its reply (Reply, read under "data").
namespace NVB::Common::Communication::Commands::Format::History {

namespace ByFiles {
inline constexpr char Name[] = "HistoryListByFiles";
namespace Reply {
inline constexpr char CSVLine[] = "CSVLine";
inline constexpr char DateModified[] = "DateModified";
inline constexpr char Duration[] = "Duration";
inline constexpr char File[] = "File";
inline constexpr char FinishTime[] = "FinishTime";
inline constexpr char ID[] = "ID";
inline constexpr char Key[] = "HistoryListByFiles";
inline constexpr char Message[] = "Message";
inline constexpr char Operation[] = "Operation";
inline constexpr char PlanName[] = "PlanId";
inline constexpr char Size[] = "Size";
} // namespace Reply
namespace Request {
inline constexpr char Filter[] = "filter";
inline constexpr char GenerateCSV[] = "generateCSV";
inline constexpr char LastId[] = "lastId";
inline constexpr char Period[] = "period";
inline constexpr char PlanId[] = "planId";
inline constexpr char Profile[] = "profile";
namespace FilterOperationType {
inline constexpr char Key[] = "filterOperationType";
} // namespace FilterOperationType
} // namespace Request
} // namespace ByFiles
namespace ByPlan {
inline constexpr char Name[] = "HistoryListByPlan";
namespace Reply {
inline constexpr char CSVLine[] = "CSVLine";
inline constexpr char DbID[] = "DbID";
inline constexpr char Duration[] = "Duration";
inline constexpr char ErrorMessage[] = "ErrorMessage";
inline constexpr char FileOperationsTotalCount[] = "FileOperationsTotalCount";
inline constexpr char Key[] = "HistoryListByPlan";
inline constexpr char Operation[] = "Operation";
inline constexpr char PlanId[] = "PlanId";
inline constexpr char PlanName[] = "PlanName";
inline constexpr char Result[] = "Result";
inline constexpr char Size[] = "Size";
inline constexpr char StartTimeUTC[] = "StartTimeUTC";
} // namespace Reply
namespace Request {
inline constexpr char Filter[] = "filter";
inline constexpr char GenerateCSV[] = "generateCSV";
inline constexpr char LastID[] = "lastID";
inline constexpr char Period[] = "period";
inline constexpr char PlanID[] = "planID";
inline constexpr char Profile[] = "profile";
} // namespace Request
} // namespace ByPlan
namespace DataType {
namespace Period {
namespace Values {
inline constexpr char All[] = "All";
inline constexpr char DayLast[] = "DayLast";
inline constexpr char MonthLast[] = "MonthLast";
inline constexpr char WeekLast[] = "WeekLast";
} // namespace Values
} // namespace Period
} // namespace DataType

} // namespace NVB::Common::Communication::Commands::Format::History
