#include "KPL_LogMacros.h"

#include <atomic>
#include <cstdarg>
#include <cstdio>
#include <memory>
#include <mutex>
#include <string_view>
#include <utility>

#include "ZentuUtilitiesInternal.h"

namespace KPL_LogMacros {
namespace {

// The hold that takes this thread's messages, or null when they go to the handler.
thread_local HeldMessages* t_hold = nullptr;

// The most detailed message type that is logged.
std::atomic<int> g_verbosity{LOG_WARNING};

// Guards g_handler; held only to copy or swap the pointer, never while a handler runs.
std::mutex g_handlerMutex;

// The installed handler, shared so that a message in flight keeps it alive while it is swapped;
// null while the default handler is in effect.
std::shared_ptr<const LogHandler> g_handler;

// The handler that the next message goes to, or null for the default one.
std::shared_ptr<const LogHandler> CurrentHandler() {
    const std::lock_guard<std::mutex> lock(g_handlerMutex);
    return g_handler;
}

// The default handler's line prefix for a message type.
std::string_view PrefixOf(int type) {
    if (type <= LOG_ERROR) {
        return ZentuUtilitiesTexts::LOG_ERROR_PREFIX;
    }
    if (type == LOG_WARNING) {
        return ZentuUtilitiesTexts::LOG_WARNING_PREFIX;
    }
    return type < LOG_TRACE ? ZentuUtilitiesTexts::LOG_INFO_PREFIX
                            : ZentuUtilitiesTexts::LOG_TRACE_PREFIX;
}

// Writes the message as one line to standard error, in one call so that lines of several
// threads do not interleave.
void WriteToStandardError(int type, const std::string& message) {
    std::string line(PrefixOf(type));
    line += message;
    line += '\n';
    std::fwrite(line.data(), 1, line.size(), stderr);
}

// The whole printf-style text, however long; log lines are never cut.
std::string FormatLine(const char* format, va_list arguments) {
    va_list sizing;
    va_copy(sizing, arguments);
    // NOLINTNEXTLINE(clang-analyzer-valist.Uninitialized): the caller's va_start initialises it.
    const int length = std::vsnprintf(nullptr, 0, format, sizing);
    va_end(sizing);
    if (length <= 0) {
        return std::string();
    }
    std::string line(static_cast<std::size_t>(length), '\0');
    std::vsnprintf(line.data(), line.size() + 1, format, arguments);
    return line;
}

// Hands a formatted message to the installed handler, or to the default one.
void Deliver(LogMsgType type, const char* file, int line, const char* tag,
             const std::string& message) {
    const std::shared_ptr<const LogHandler> handler = CurrentHandler();
    if (handler) {
        (*handler)(type, file, line, tag, message);
    } else {
        WriteToStandardError(type, message);
    }
}

}  // namespace

void log_msg(LogMsgType type, const char* file, int line, const char* tag, const char* format,
             ...) {
    if (!IsLogEnabled(type)) {
        return;
    }
    va_list arguments;
    va_start(arguments, format);
    std::string message;
    try {
        message = FormatLine(format, arguments);
    } catch (...) {
        va_end(arguments);
        throw;
    }
    va_end(arguments);
    if (t_hold != nullptr) {
        t_hold->messages_.push_back(
            HeldMessages::Message{type, file, line, tag, std::move(message)});
        return;
    }
    Deliver(type, file, line, tag, message);
}

HeldMessages::HeldMessages() : outer_(std::exchange(t_hold, this)) {}

HeldMessages::~HeldMessages() {
    Release();
}

void HeldMessages::Deliver() {
    Release();
    for (Message& message : messages_) {
        if (t_hold != nullptr) {
            t_hold->messages_.push_back(std::move(message));
        } else {
            KPL_LogMacros::Deliver(message.type, message.file, message.line, message.tag,
                                   message.text);
        }
    }
    messages_.clear();
}

void HeldMessages::Release() {
    if (holding_) {
        t_hold = outer_;
        holding_ = false;
    }
}

LogHandler SetLogHandler(LogHandler handler) {
    std::shared_ptr<const LogHandler> installed;
    if (handler) {
        installed = std::make_shared<const LogHandler>(std::move(handler));
    }
    std::shared_ptr<const LogHandler> previous;
    {
        const std::lock_guard<std::mutex> lock(g_handlerMutex);
        previous = std::exchange(g_handler, std::move(installed));
    }
    // An empty result stands for the default handler, so passing it back restores that.
    return previous ? *previous : LogHandler();
}

int SetLogVerbosity(int maxType) {
    return g_verbosity.exchange(maxType);
}

bool IsLogEnabled(LogMsgType type) {
    return type <= g_verbosity.load(std::memory_order_relaxed);
}

}  // namespace KPL_LogMacros
