#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <iterator>
#include <memory>
#include <random>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <typeinfo>
#include <utility>
#include <vector>

#include "KPL_Failure.h"
#include "KPL_LogMacros.h"
#include "ZentuCmd.h"
#include "ZentuCmdAutoItem.h"
#include "ZentuCmdContainer.h"
#include "ZentuCmdDefs.h"
#include "ZentuCmdEnumItem.h"
#include "ZentuCmdIntItem.h"
#include "ZentuCmdItem.h"
#include "ZentuCmdItemDefs.h"
#include "ZentuCmdRawStringItem.h"
#include "ZentuCmdReferenceItem.h"
#include "ZentuCmdScalarItem.h"
#include "ZentuCmdStringItem.h"

namespace zentu_test {

// A scoped enumeration's value, which assertion messages print as a number.
template <typename Enum>
constexpr std::int64_t ToInt(Enum value) {
    return static_cast<std::int64_t>(static_cast<std::underlying_type_t<Enum>>(value));
}

// Implements only what the base leaves pure, so every answer it gives is the base class's own.
class BareItem final : public ZentuCmdItem {
  public:
    explicit BareItem(const std::string& name) : ZentuCmdItem(name) {}

    std::unique_ptr<ZentuCmdItem> Clone() const override {
        return std::make_unique<BareItem>(*this);
    }
};

// The exact class of an item by a short name, since a string item is also a raw string item.
inline std::string ClassOf(const ZentuCmdItem& item) {
    const std::type_info& type = typeid(item);
    const std::pair<const std::type_info*, const char*> names[] = {
        {&typeid(ZentuCmdIntItem), "int"},       {&typeid(ZentuCmdScalarItem), "real"},
        {&typeid(ZentuCmdStringItem), "string"}, {&typeid(ZentuCmdRawStringItem), "raw"},
        {&typeid(ZentuCmdEnumItem), "enum"},     {&typeid(ZentuCmdAutoItem), "auto"},
        {&typeid(ZentuCmdReferenceItem), "ref"}, {&typeid(BareItem), "bare"}};
    for (const auto& [known, name] : names) {
        if (type == *known) {
            return name;
        }
    }
    return type.name();
}

// The library's keywords, built once.
inline const ZentuCmdItemDefs::KeywordMap& Keywords() {
    static const ZentuCmdItemDefs::KeywordMap keywords = ZentuCmdItemDefs::create_enum_map();
    return keywords;
}

// Every item of the command by address, so that an untouched item is told from an equal new one.
inline std::vector<const ZentuCmdItem*> Identities(const ZentuCmd& cmd) {
    std::vector<const ZentuCmdItem*> items;
    for (std::size_t kind = 0; kind < ZentuCmdItemDefs::CMD_ITEM_KIND_COUNT; ++kind) {
        for (const auto& item : cmd.Items(static_cast<ZentuCmdItemDefs::CmdItem>(kind))) {
            items.push_back(item.get());
        }
    }
    return items;
}

// The readings that a ProbeItem claims; each bit switches one Has... query on.
enum Reading : unsigned {
    kNoReading = 0,
    kString = 1U << 0,
    kInteger = 1U << 1,
    kReal = 1U << 2,
    kVector3d = 1U << 3,
    kEnum = 1U << 4,
    kList = 1U << 5,
    kBreltList = 1U << 6,
    kReference = 1U << 7,
};

// A host-defined item with chosen readings that records the commands offered to it and can report
// its destruction, so tests observe what the command model does to items of any class. GetList
// answers list; whether HasList says so is the readings' business.
class ProbeItem final : public ZentuCmdItem {
  public:
    ProbeItem(const std::string& name, std::string text, unsigned readings = kString,
              std::vector<std::string> list = {})
        : ZentuCmdItem(name), text_(std::move(text)), readings_(readings), list_(std::move(list)) {}

    ProbeItem(const ProbeItem&) = default;
    ProbeItem& operator=(const ProbeItem&) = delete;

    ~ProbeItem() override {
        if (destroyed_ != nullptr) {
            *destroyed_ = true;
        }
    }

    // flag becomes true when this item is destroyed; it must outlive the item.
    ProbeItem& WatchDestruction(bool* flag) {
        destroyed_ = flag;
        return *this;
    }

    // Every offer is also appended to log under this item's name; it must outlive the item.
    ProbeItem& LogOffersTo(std::vector<std::string>* log) {
        log_ = log;
        return *this;
    }

    bool HasString() const override { return Has(kString); }
    const std::string GetString() const override { return text_; }  // NOLINT
    bool HasInteger() const override { return Has(kInteger); }
    bool HasReal() const override { return Has(kReal); }
    bool HasVector3d() const override { return Has(kVector3d); }
    bool HasEnum() const override { return Has(kEnum); }
    bool HasList() const override { return Has(kList); }
    std::vector<std::string> GetList() const override { return list_; }
    bool HasBreltList() const override { return Has(kBreltList); }
    bool HasReference() const override { return Has(kReference); }

    void AddReference(const ZentuCmd& target) override {
        offers_.push_back(&target);
        if (log_ != nullptr) {
            log_->push_back(GetName());
        }
    }

    // The copy answers alike but watches and logs nothing.
    std::unique_ptr<ZentuCmdItem> Clone() const override {
        auto copy = std::make_unique<ProbeItem>(*this);
        copy->destroyed_ = nullptr;
        copy->log_ = nullptr;
        copy->offers_.clear();
        return copy;
    }

    const std::vector<const ZentuCmd*>& Offers() const { return offers_; }

  private:
    bool Has(Reading reading) const { return (readings_ & reading) != 0; }

    std::string text_;
    unsigned readings_;
    std::vector<std::string> list_;
    std::vector<const ZentuCmd*> offers_;
    bool* destroyed_ = nullptr;
    std::vector<std::string>* log_ = nullptr;
};

// Appends probe to the items of kind and returns it; throws when the command did not keep it.
inline ProbeItem& Attach(ZentuCmd& cmd, ZentuCmdItemDefs::CmdItem kind,
                         std::unique_ptr<ProbeItem> probe) {
    const std::size_t position = cmd.Items(kind).size();
    const ZentuCmdItem* handedIn = probe.get();
    cmd.AddItem(kind, std::move(probe));
    if (!cmd.HasItem(kind, position) || &cmd.Item(kind, position) != handedIn) {
        throw std::logic_error("the command did not keep the item handed in");
    }
    return static_cast<ProbeItem&>(cmd.Item(kind, position));
}

// Appends a probe with a text reading only, the usual shape of an item that names a command.
inline ProbeItem& AttachProbe(ZentuCmd& cmd, ZentuCmdItemDefs::CmdItem kind,
                              const std::string& text) {
    return Attach(cmd, kind, std::make_unique<ProbeItem>("PROBE", text));
}

// A command as one line, so that whole containers compare as text: name@kind, then per item
// kind:name=text/class->identifier it refers to, with '|' for line feeds. With asRead, a reference
// item shows as the automatically typed item that reading it back from a file yields.
inline std::string CmdLine(const ZentuCmd& cmd, bool asRead = false) {
    std::string line =
        cmd.GetName() + "@" + ZentuCmdDefs::CMD_NAMES[static_cast<std::size_t>(cmd.GetType())];
    for (std::size_t kind = 0; kind < ZentuCmdItemDefs::CMD_ITEM_KIND_COUNT; ++kind) {
        for (const auto& item : cmd.Items(static_cast<ZentuCmdItemDefs::CmdItem>(kind))) {
            std::string text = item->GetString();
            std::replace(text.begin(), text.end(), '\n', '|');
            const std::string itemClass = ClassOf(*item);
            line += " " + ZentuCmdItemDefs::CMD_ITEM_NAMES[kind] + ":" + item->GetName() + "=" +
                    text + "/" + (asRead && itemClass == "ref" ? "auto" : itemClass);
            if (item->HasReference()) {
                const ZentuCmd& target = *item->GetReference();
                line += "->" + (target.HasItem(ZentuCmdItemDefs::CmdItem::ID_NAME, 0)
                                    ? target.Item(ZentuCmdItemDefs::CmdItem::ID_NAME, 0).GetString()
                                    : std::string());
            }
        }
    }
    return line;
}

inline std::vector<std::string> CmdLines(const ZentuCmdContainer& container, bool asRead = false) {
    std::vector<std::string> lines;
    for (const ZentuCmd& cmd : container) {
        lines.push_back(CmdLine(cmd, asRead));
    }
    return lines;
}

// The position of name in a table of names, such as the library's names of kinds and types.
template <typename Names>
std::size_t IndexOf(const Names& names, const std::string& name) {
    const auto found = std::find(std::begin(names), std::end(names), name);
    if (found == std::end(names)) {
        throw std::invalid_argument("no such name: " + name);
    }
    return static_cast<std::size_t>(found - std::begin(names));
}

// The lines of a case file's field, in which "-" stands for none.
inline std::vector<std::string> FieldLines(const std::string& field) {
    std::vector<std::string> lines;
    for (std::size_t begin = 0; field != "-" && begin <= field.size();) {
        const std::size_t end = std::min(field.find('\n', begin), field.size());
        lines.push_back(field.substr(begin, end - begin));
        begin = end + 1;
    }
    return lines;
}

// The failure that action ends in. Throws (which fails the calling test) when it ends without.
template <typename Action>
KPL_Failure FailureOf(Action&& action) {
    try {
        action();
    } catch (const KPL_Failure& failure) {
        return failure;
    }
    throw std::logic_error("ended without a failure");
}

// A failure as one line: tag, [identifier], code and message, then " <- " and its cause if any.
inline std::string FailureLine(const KPL_Exception& failure) {
    const std::string line = failure.GetTag() + " [" + failure.GetId() + "] " +
                             std::to_string(failure.GetErrorCode()) + ": " + failure.GetMessage();
    return failure.GetCause() == nullptr ? line : line + " <- " + FailureLine(*failure.GetCause());
}

// Collects every message logged at warning verbosity while it lives, then restores the logger.
class LogCollector {
  public:
    struct Line {
        int type;
        std::string file;
        int line;
        std::string tag;
        std::string message;
    };

    LogCollector()
        : previousHandler_(
              KPL_LogMacros::SetLogHandler([this](int type, const char* file, int line,
                                                  const char* tag, const std::string& message) {
                  lines_.push_back({type, file != nullptr ? file : "", line,
                                    tag != nullptr ? tag : "", message});
              })),
          previousVerbosity_(KPL_LogMacros::SetLogVerbosity(KPL_LogMacros::LOG_WARNING)) {}

    LogCollector(const LogCollector&) = delete;
    LogCollector& operator=(const LogCollector&) = delete;

    ~LogCollector() {
        KPL_LogMacros::SetLogVerbosity(previousVerbosity_);
        KPL_LogMacros::SetLogHandler(previousHandler_);
    }

    // What was logged since the last call, which forgets it.
    std::vector<Line> Take() { return std::exchange(lines_, {}); }

  private:
    std::vector<Line> lines_;
    KPL_LogMacros::LogHandler previousHandler_;
    int previousVerbosity_;
};

// A fresh temporary folder under a random name, removed with all it holds when it goes.
class ScratchDir {
  public:
    explicit ScratchDir(const std::string& prefix)
        : path_(std::filesystem::temp_directory_path() /
                (prefix + std::to_string(std::random_device()()))) {
        std::filesystem::create_directories(path_);
    }

    ScratchDir(const ScratchDir&) = delete;
    ScratchDir& operator=(const ScratchDir&) = delete;

    ~ScratchDir() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }

    const std::filesystem::path& Path() const { return path_; }

  private:
    std::filesystem::path path_;
};

}  // namespace zentu_test
