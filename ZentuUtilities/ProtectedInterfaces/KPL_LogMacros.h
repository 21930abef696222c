#pragma once

#include <functional>
#include <string>

#include "ZentuUtilitiesExport.h"

namespace KPL_LogMacros {

// The kinds of log message; a higher value is more detailed.
enum LogMsgType : int { LOG_ERROR = 1, LOG_WARNING = 2, LOG_INFO = 3, LOG_TRACE = 7 };

// Logs a printf-style message from the given source location under the thrower's tag; a message
// whose type is above the verbosity is dropped before anything is formatted.
ZENTU_UTILITIES_API void log_msg(LogMsgType type, const char* file, int line, const char* tag,
                                 const char* format, ...) ZENTU_PRINTF_FORMAT(5, 6);

// Receives every message that passes the verbosity, already formatted.
using LogHandler = std::function<void(int type, const char* file, int line, const char* tag,
                                      const std::string& message)>;

// Installs a handler and returns the previous one; an empty handler restores the default,
// which writes "warning: <message>" (or "error:", "info:", "trace:") to standard error.
ZENTU_UTILITIES_API LogHandler SetLogHandler(LogHandler handler);

// Sets the most detailed message type that is logged and returns the previous one; default 2.
ZENTU_UTILITIES_API int SetLogVerbosity(int maxType);

// Whether a message of the given type would be logged; lets callers skip preparing arguments.
ZENTU_UTILITIES_API bool IsLogEnabled(LogMsgType type);

}  // namespace KPL_LogMacros
