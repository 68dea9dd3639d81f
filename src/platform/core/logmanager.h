#pragma once

namespace NVL::LogManager {

// The log levels a user chooses from, least talkative first. They map onto
// NVL::LogLevel, whose finer steps are for developers.
enum LogLevel { Error = 0, Warning = 1, Info = 2, Debug = 3 };

} // namespace NVL::LogManager
