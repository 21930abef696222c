#pragma once

#include <exception>
#include <memory>
#include <string>
#include <vector>

#include "KPL_Backtrace.h"
#include "ZentuUtilitiesExport.h"

// The abstract base of every failure that the Zentu libraries throw; catch it by reference.
class ZENTU_UTILITIES_API KPL_Exception : public std::exception {
public:
    ~KPL_Exception() override;

    // The message as a C string.
    const char* what() const noexcept override;

    // A new heap copy of the failure, of its own class.
    virtual std::unique_ptr<KPL_Exception> Clone() const = 0;

    // The complete message text.
    virtual const std::string& GetMessage() const;

    // The thrower's log tag, such as "|%P|ZentuCmdEngine|ZentuCmdIntItem".
    virtual const std::string& GetTag() const;

    // The name of the failure's class.
    virtual std::string GetTypeName() const = 0;

    // A negative code that tells failures with an identifier from those without.
    virtual int GetErrorCode() const = 0;

    // The message identifier; empty unless the thrower gave one.
    const std::string& GetId() const { return id_; }

    // The failure that the thrower caught and passes on, or null.
    const KPL_Exception* GetCause() const { return cause_.get(); }

    // The call stack at the point where the failure was built, innermost frame first.
    const std::vector<std::string>& GetBacktrace() const { return backtrace_.Texts(); }

protected:
    // Builds a failure and captures the call stack of its thrower.
    KPL_Exception(std::string id, std::string message, std::string tag,
                  std::unique_ptr<KPL_Exception> cause);

    // Copies every field and clones the cause.
    KPL_Exception(const KPL_Exception& other);
    KPL_Exception(KPL_Exception&& other) noexcept;
    KPL_Exception& operator=(const KPL_Exception& other);
    KPL_Exception& operator=(KPL_Exception&& other) noexcept;

private:
    std::string id_;
    std::string tag_;
    std::string message_;
    std::unique_ptr<KPL_Exception> cause_;
    KPL_Backtrace::Frames backtrace_;
};

// The one failure type that the Zentu libraries throw.
class ZENTU_UTILITIES_API KPL_Failure : public KPL_Exception {
public:
    // The longest message that a failure keeps; longer texts are cut to it.
    static constexpr std::size_t MAX_MESSAGE_LENGTH = 1023;

    // A failure without identifier and without cause.
    KPL_Failure(const std::string& message, const std::string& tag);

    // A failure that carries a message identifier.
    KPL_Failure(const std::string& id, const std::string& message, const std::string& tag);

    // A failure that passes on a copy of the failure that caused it.
    KPL_Failure(const KPL_Exception& cause, const std::string& message, const std::string& tag);

    KPL_Failure(const KPL_Failure& other);
    KPL_Failure(KPL_Failure&& other) noexcept;
    KPL_Failure& operator=(const KPL_Failure& other);
    KPL_Failure& operator=(KPL_Failure&& other) noexcept;
    ~KPL_Failure() override;

    // A new failure with the same identifier, message, tag and cause and a fresh call stack.
    std::unique_ptr<KPL_Exception> Clone() const override;

    // "KPL_Failure".
    std::string GetTypeName() const override;

    // -1 for a failure with an identifier, -14 for one without.
    int GetErrorCode() const override;

    // Formats a message the way printf does, cut to MAX_MESSAGE_LENGTH characters.
    static std::string Format(const char* format, ...) ZENTU_PRINTF_FORMAT(1, 2);
};
