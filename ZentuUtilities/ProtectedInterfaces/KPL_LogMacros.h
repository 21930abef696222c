#pragma once

#include <functional>
#include <string>
#include <vector>

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

// Holds back the messages that the constructing thread logs while it lives, so that work whose
// outcome is not known yet logs only once it is kept: Deliver passes them on in the order logged,
// and destruction without it drops them. A hold inside another passes its messages to the outer.
class ZENTU_UTILITIES_API HeldMessages {
  public:
    // Starts holding this thread's messages.
    HeldMessages();

    // Stops holding; messages not delivered are dropped.
    ~HeldMessages();

    HeldMessages(const HeldMessages&) = delete;
    HeldMessages& operator=(const HeldMessages&) = delete;

    // Stops holding and logs the held messages, in order, as if they were logged now.
    void Deliver();

  private:
    // A message as log_msg hands it to the handler.
    struct Message {
        LogMsgType type;
        const char* file;
        int line;
        const char* tag;
        std::string text;
    };

    friend void log_msg(LogMsgType type, const char* file, int line, const char* tag,
                        const char* format, ...);

    // Stops holding, giving the thread back to the hold that was in place before.
    void Release();

    std::vector<Message> messages_;
    HeldMessages* outer_;
    bool holding_ = true;
};

}  // namespace KPL_LogMacros
