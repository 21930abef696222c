#include "KPL_Failure.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <utility>

#include "ZentuUtilitiesInternal.h"

namespace {

// The frames between the capture and the thrower: KPL_Exception's and KPL_Failure's constructors.
constexpr std::size_t CONSTRUCTOR_FRAMES = 2;

// The error code of a failure that carries a message identifier.
constexpr int ERROR_CODE_WITH_ID = -1;

// The error code of a failure without message identifier.
constexpr int ERROR_CODE_WITHOUT_ID = -14;

// The message cut to the length that every failure keeps.
std::string CutToMaximumLength(std::string message) {
    if (message.size() > KPL_Failure::MAX_MESSAGE_LENGTH) {
        message.resize(KPL_Failure::MAX_MESSAGE_LENGTH);
    }
    return message;
}

// A copy of the cause, or null when there is none.
std::unique_ptr<KPL_Exception> CloneCause(const KPL_Exception* cause) {
    return cause != nullptr ? cause->Clone() : nullptr;
}

}  // namespace

KPL_Exception::~KPL_Exception() = default;

const char* KPL_Exception::what() const noexcept {
    return message_.c_str();
}

const std::string& KPL_Exception::GetMessage() const {
    return message_;
}

const std::string& KPL_Exception::GetTag() const {
    return tag_;
}

// Kept out of line so that the number of constructor frames above the thrower is fixed.
ZENTU_NOINLINE KPL_Exception::KPL_Exception(std::string id, std::string message, std::string tag,
                                            std::unique_ptr<KPL_Exception> cause)
    : id_(std::move(id)),
      tag_(std::move(tag)),
      message_(CutToMaximumLength(std::move(message))),
      cause_(std::move(cause)),
      backtrace_(KPL_Backtrace::CaptureFrames(CONSTRUCTOR_FRAMES)) {}

KPL_Exception::KPL_Exception(const KPL_Exception& other)
    : std::exception(other),
      id_(other.id_),
      tag_(other.tag_),
      message_(other.message_),
      cause_(CloneCause(other.cause_.get())),
      backtrace_(other.backtrace_) {}

KPL_Exception::KPL_Exception(KPL_Exception&& other) noexcept = default;

KPL_Exception& KPL_Exception::operator=(const KPL_Exception& other) {
    if (this != &other) {
        // Everything that may throw is copied first, so that a failed assignment changes nothing.
        std::string id = other.id_;
        std::string tag = other.tag_;
        std::string message = other.message_;
        std::unique_ptr<KPL_Exception> cause = CloneCause(other.cause_.get());
        KPL_Backtrace::Frames backtrace = other.backtrace_;
        id_ = std::move(id);
        tag_ = std::move(tag);
        message_ = std::move(message);
        cause_ = std::move(cause);
        backtrace_ = std::move(backtrace);
    }
    return *this;
}

KPL_Exception& KPL_Exception::operator=(KPL_Exception&& other) noexcept = default;

ZENTU_NOINLINE KPL_Failure::KPL_Failure(const std::string& message, const std::string& tag)
    : KPL_Exception(std::string(), message, tag, nullptr) {}

ZENTU_NOINLINE KPL_Failure::KPL_Failure(const std::string& id, const std::string& message,
                                        const std::string& tag)
    : KPL_Exception(id, message, tag, nullptr) {}

ZENTU_NOINLINE KPL_Failure::KPL_Failure(const KPL_Exception& cause, const std::string& message,
                                        const std::string& tag)
    : KPL_Exception(std::string(), message, tag, cause.Clone()) {}

KPL_Failure::KPL_Failure(const KPL_Failure& other) = default;

KPL_Failure::KPL_Failure(KPL_Failure&& other) noexcept = default;

KPL_Failure& KPL_Failure::operator=(const KPL_Failure& other) = default;

KPL_Failure& KPL_Failure::operator=(KPL_Failure&& other) noexcept = default;

KPL_Failure::~KPL_Failure() = default;

std::unique_ptr<KPL_Exception> KPL_Failure::Clone() const {
    // Built with new rather than make_unique so that Clone is the innermost frame of the new
    // back trace whether or not the compiler inlines make_unique. No constructor takes both an
    // identifier and a cause, so no failure carries both.
    if (const KPL_Exception* cause = GetCause()) {
        return std::unique_ptr<KPL_Exception>(new KPL_Failure(*cause, GetMessage(), GetTag()));
    }
    return std::unique_ptr<KPL_Exception>(new KPL_Failure(GetId(), GetMessage(), GetTag()));
}

std::string KPL_Failure::GetTypeName() const {
    return ZentuUtilitiesTexts::FAILURE_TYPE_NAME;
}

int KPL_Failure::GetErrorCode() const {
    return GetId().empty() ? ERROR_CODE_WITHOUT_ID : ERROR_CODE_WITH_ID;
}

std::string KPL_Failure::Format(const char* format, ...) {
    char buffer[MAX_MESSAGE_LENGTH + 1];
    va_list arguments;
    va_start(arguments, format);
    // NOLINTNEXTLINE(clang-analyzer-valist.Uninitialized): va_start above initialises it.
    const int length = std::vsnprintf(buffer, sizeof buffer, format, arguments);
    va_end(arguments);
    if (length < 0) {
        return std::string();
    }
    return std::string(buffer, std::min(static_cast<std::size_t>(length), MAX_MESSAGE_LENGTH));
}
