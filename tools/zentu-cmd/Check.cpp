#include "Check.h"

#include <algorithm>
#include <map>
#include <ostream>
#include <unordered_map>

#include "KPL_Failure.h"
#include "ZentuCmd.h"
#include "ZentuCmdContainer.h"
#include "ZentuCmdContainerRules.h"
#include "ZentuCmdItemFactory.h"
#include "ZentuCmdMetaData.h"
#include "ZentuFileUtil.h"
#include "ZentuParFile.h"

using ZentuCmdDefs::Cmd;
using ZentuCmdItemDefs::CmdItem;
using ZentuCmdItemDefs::DataType;

namespace zentu_cmd {

namespace {

// Where an item of the checked file came from, and whether its schema calls it a reference.
struct ItemOrigin {
    std::size_t line;
    bool reference;
};

// What checking one file found.
struct FileFindings {
    std::size_t errors = 0;
    std::size_t warnings = 0;
    std::size_t resolved = 0;
    std::size_t unresolved = 0;
};

std::string upper_case(std::string text) {
    for (char& c : text) {
        if (c >= 'a' && c <= 'z') {
            c = static_cast<char>(c - 'a' + 'A');
        }
    }
    return text;
}

std::string identifier_of(const ZentuCmd& command) {
    return command.HasItem(CmdItem::ID_NAME, 0) ? command.Item(CmdItem::ID_NAME, 0).GetString()
                                                : std::string();
}

std::size_t edit_distance(const std::string& a, const std::string& b) {
    std::vector<std::size_t> previous(b.size() + 1);
    std::vector<std::size_t> current(b.size() + 1);
    for (std::size_t j = 0; j <= b.size(); ++j) {
        previous[j] = j;
    }
    for (std::size_t i = 1; i <= a.size(); ++i) {
        current[0] = i;
        for (std::size_t j = 1; j <= b.size(); ++j) {
            const std::size_t substitution = previous[j - 1] + (a[i - 1] == b[j - 1] ? 0 : 1);
            current[j] = std::min({previous[j] + 1, current[j - 1] + 1, substitution});
        }
        std::swap(previous, current);
    }
    return previous[b.size()];
}

// The identifier in the container that text most probably meant: the closest one, when it is
// within a third of the text's length (and at least one edit) of it.
std::string closest_identifier(const std::string& text, const ZentuCmdContainer& container) {
    std::string best;
    std::size_t bestDistance = std::max<std::size_t>(1, text.size() / 3) + 1;
    for (const ZentuCmd& command : container) {
        const std::string identifier = identifier_of(command);
        if (identifier.empty()) {
            continue;
        }
        const std::size_t distance = edit_distance(upper_case(text), identifier);
        if (distance < bestDistance) {
            best = identifier;
            bestDistance = distance;
        }
    }
    return best;
}

// Checks one file: reads it item by item, so that every refusal is reported and not only the
// first, then completes what was read as the library does and looks at its references.
class FileCheck {
  public:
    FileCheck(std::string path, const ZentuCmdIoConfig& config, std::ostream& out)
        : path_(std::move(path)), config_(config), out_(out) {}

    FileFindings Run() {
        try {
            const ZentuParFile file(ZentuFileUtil::from_utf8(path_));
            for (const ZentuParCommand& parsed : file) {
                ReadCommand(parsed);
            }
        } catch (const KPL_Exception& failure) {
            ReportFileFailure(failure.GetMessage());
            return findings_;
        }
        Complete();
        CheckReferences();
        return findings_;
    }

    // The number of commands of each kind, of what was read and completed, in kind order.
    std::map<Cmd, std::size_t> CommandsPerKind() const {
        std::map<Cmd, std::size_t> counts;
        for (const ZentuCmd& command : container_) {
            ++counts[command.GetType()];
        }
        return counts;
    }

  private:
    void ReadCommand(const ZentuParCommand& parsed) {
        const auto found = config_.cmd_metadata.find(upper_case(parsed.GetKeyword()));
        if (found == config_.cmd_metadata.end()) {
            Report("warning", parsed.GetLine(),
                   "the schema describes no command '" + parsed.GetKeyword() + "'");
        }
        const ZentuCmdMetaData& description =
            found == config_.cmd_metadata.end() ? unknownCommand_ : found->second;
        ZentuCmd& command = container_.CreateCommand(description.GetKey(), parsed.GetKeyword());
        for (const ZentuParSubCommand& sub : parsed) {
            ReadItem(sub, parsed, description, command);
        }
        ZentuCmdContainerRules::add_default_valued_items(command, description, config_.enum_map);
    }

    void ReadItem(const ZentuParSubCommand& sub, const ZentuParCommand& parsed,
                  const ZentuCmdMetaData& description, ZentuCmd& command) {
        const std::string name = upper_case(sub.GetName());
        const auto found = description.GetMetaData().find(name);
        if (found == description.GetMetaData().end()) {
            if (!name.empty()) {
                const std::string withId =
                    parsed.GetIdName().empty() ? "" : " with ID_NAME " + parsed.GetIdName();
                Report("warning", sub.GetLine(),
                       "Unknown item '" + name + "' found in command " + command.GetName() +
                           withId + ".");
            }
            return;
        }
        try {
            std::unique_ptr<ZentuCmdItem> item = ZentuCmdItemFactory::create(
                name, sub.retrieveValue(), found->second, config_.enum_map);
            origins_[item.get()] = {sub.GetLine(), found->second.type == DataType::REFERENCE};
            command.AddItem(found->second.key, std::move(item));
        } catch (const KPL_Exception& refusal) {
            Report("error", sub.GetLine(), refusal.GetMessage());
        }
    }

    void Complete() {
        try {
            ZentuCmdContainerRules::create_default_commands(container_, config_.cmd_metadata,
                                                            config_.enum_map);
            container_.CreateReferences();
            ZentuCmdContainerRules::apply_rules(container_, config_);
        } catch (const KPL_Exception& failure) {
            Report("error", 0, failure.GetMessage());
        }
    }

    void CheckReferences() {
        for (const ZentuCmd& command : container_) {
            for (std::size_t kind = 0; kind < ZentuCmdItemDefs::CMD_ITEM_KIND_COUNT; ++kind) {
                for (const auto& item : command.Items(static_cast<CmdItem>(kind))) {
                    CheckReference(command, *item);
                }
            }
        }
    }

    void CheckReference(const ZentuCmd& command, const ZentuCmdItem& item) {
        const auto origin = origins_.find(&item);
        if (origin == origins_.end() || !origin->second.reference) {
            return;
        }
        if (item.HasReference()) {
            ++findings_.resolved;
            return;
        }
        ++findings_.unresolved;
        const std::string identifier = identifier_of(command);
        std::string message = command.GetName() +
                              (identifier.empty() ? "" : " '" + identifier + "'") + ": " +
                              item.GetName() + " '" + item.GetString() + "' names no command";
        if (const std::string meant = closest_identifier(item.GetString(), container_);
            !meant.empty()) {
            message += "; did you mean '" + meant + "'?";
        }
        Report("warning", origin->second.line, message);
    }

    // The reader's own failures already start with "path:line: "; the severity goes after it.
    void ReportFileFailure(const std::string& message) {
        ++findings_.errors;
        const std::size_t where =
            message.rfind(path_, 0) == 0 ? message.find(": ", path_.size()) : std::string::npos;
        if (where == std::string::npos) {
            out_ << path_ << ": error: " << message << "\n";
        } else {
            out_ << message.substr(0, where + 2) << "error: " << message.substr(where + 2) << "\n";
        }
    }

    void Report(const char* severity, std::size_t line, const std::string& message) {
        ++(severity[0] == 'e' ? findings_.errors : findings_.warnings);
        out_ << path_;
        if (line > 0) {
            out_ << ":" << line;
        }
        out_ << ": " << severity << ": " << message << "\n";
    }

    std::string path_;
    const ZentuCmdIoConfig& config_;
    std::ostream& out_;
    const ZentuCmdMetaData unknownCommand_;
    ZentuCmdContainer container_;
    std::unordered_map<const ZentuCmdItem*, ItemOrigin> origins_;
    FileFindings findings_;
};

void print_summary(const std::string& path, const FileCheck& check, const FileFindings& findings,
                   std::ostream& out) {
    out << path << ": ";
    std::size_t total = 0;
    std::string perKind;
    for (const auto& [kind, count] : check.CommandsPerKind()) {
        total += count;
        perKind += (perKind.empty() ? "" : ", ") +
                   ZentuCmdDefs::CMD_NAMES[static_cast<std::size_t>(kind)] + " " +
                   std::to_string(count);
    }
    out << total << (total == 1 ? " command" : " commands");
    if (!perKind.empty()) {
        out << " (" << perKind << ")";
    }
    out << "; references: " << findings.resolved << " resolved, " << findings.unresolved
        << " unresolved; " << findings.errors << (findings.errors == 1 ? " error, " : " errors, ")
        << findings.warnings << (findings.warnings == 1 ? " warning" : " warnings") << "\n";
}

}  // namespace

int run_check(const std::vector<std::string>& files, const Schema& schema,
              const CheckOptions& options, std::ostream& out) {
    const ZentuCmdIoConfig config = build_config(schema, Completion::FULL);
    int status = CHECK_CLEAN;
    for (const std::string& path : files) {
        FileCheck check(path, config, out);
        const FileFindings findings = check.Run();
        if (!options.quiet) {
            print_summary(path, check, findings, out);
        }
        if (findings.errors > 0) {
            status = CHECK_ERRORS;
        } else if (findings.warnings > 0 && options.strict && status == CHECK_CLEAN) {
            status = CHECK_WARNINGS;
        }
    }
    return status;
}

}  // namespace zentu_cmd
