#include "Check.h"

#include <algorithm>
#include <map>
#include <ostream>
#include <unordered_map>
#include <unordered_set>

#include "KPL_Failure.h"
#include "ZentuCmd.h"
#include "ZentuCmdContainer.h"
#include "ZentuCmdContainerRules.h"
#include "ZentuCmdItemFactory.h"
#include "ZentuCmdMetaData.h"
#include "ZentuDrespExpressionParser.h"
#include "ZentuFileUtil.h"
#include "ZentuMathExpressions.h"
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

// A message on one line: the library's keyword refusal spans three, and tools that read findings
// expect one per line.
std::string one_line(const std::string& message) {
    std::string line;
    for (char c : message) {
        const char written = c == '\n' ? ' ' : c;
        if (!(written == ' ' && !line.empty() && line.back() == ' ')) {
            line += written;
        }
    }
    return line;
}

// The references that an expression writes, %NAME%, in the order in which they appear.
std::vector<std::string> references_in(const std::string& expression) {
    std::vector<std::string> references;
    for (std::size_t open = expression.find('%'); open != std::string::npos;) {
        const std::size_t close = expression.find('%', open + 1);
        if (close == std::string::npos) {
            break;
        }
        references.push_back(expression.substr(open + 1, close - open - 1));
        open = expression.find('%', close + 1);
    }
    return references;
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

// The candidate that text most probably meant: the closest one, when it is within a third of the
// text's length (and at least one edit) of it; empty when none is.
std::string closest(const std::string& text, const std::vector<std::string>& candidates) {
    std::string best;
    std::size_t bestDistance = std::max<std::size_t>(1, text.size() / 3) + 1;
    for (const std::string& candidate : candidates) {
        const std::size_t distance = edit_distance(upper_case(text), candidate);
        if (!candidate.empty() && distance < bestDistance) {
            best = candidate;
            bestDistance = distance;
        }
    }
    return best;
}

// The identifier in the container that text most probably meant.
std::string closest_identifier(const std::string& text, const ZentuCmdContainer& container) {
    std::vector<std::string> identifiers;
    for (const ZentuCmd& command : container) {
        identifiers.push_back(identifier_of(command));
    }
    return closest(text, identifiers);
}

// The suggestion to append to a finding, or nothing when no candidate is close.
std::string did_you_mean(const std::string& meant, const char* quote) {
    return meant.empty() ? std::string() : "; did you mean " + (quote + meant + quote) + "?";
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
        CheckExpressions();
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
            std::vector<std::string> keywords;
            for (const auto& entry : config_.cmd_metadata) {
                keywords.push_back(entry.first);
            }
            std::sort(keywords.begin(), keywords.end());
            Report("warning", parsed.GetLine(),
                   "the schema describes no command '" + parsed.GetKeyword() + "'" +
                       did_you_mean(closest(parsed.GetKeyword(), keywords), "'"));
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

    // Expressions are checked here, where their line is known, before the expression rule meets
    // them; a faulty one is taken out, so that the rule still expands the others and every fault
    // of the file is reported in one run.
    void CheckExpressions() {
        const auto setup = ZentuDrespExpressionParser::create_token_setup(container_);
        const std::unordered_set<std::string> responses = ResponseIdentifiers();
        for (std::size_t i = 0; i < container_.GetNumberOfCommands(Cmd::OPERATOR); ++i) {
            ZentuCmd& command = container_.GetCommand(Cmd::OPERATOR, i);
            if (!command.HasItem(CmdItem::ADD_FILE, 0) ||
                !command.Item(CmdItem::ADD_FILE, 0).HasString()) {
                continue;
            }
            const ZentuCmdItem& expression = command.Item(CmdItem::ADD_FILE, 0);
            const std::string problem = ExpressionProblem(expression.GetString(), setup, responses);
            if (!problem.empty()) {
                const auto origin = origins_.find(&expression);
                Report("error", origin == origins_.end() ? 0 : origin->second.line, problem);
                command.Erase(CmdItem::ADD_FILE, command.begin(CmdItem::ADD_FILE));
            }
        }
    }

    // What is wrong with an expression: first a reference that names no response, with the
    // identifier probably meant, else the tokenizer's own refusal; empty when nothing is.
    std::string ExpressionProblem(const std::string& expression,
                                  const std::vector<ZentuMathExpressions::TokenDescription>& setup,
                                  const std::unordered_set<std::string>& responses) const {
        for (const std::string& name : references_in(expression)) {
            if (responses.count(upper_case(name)) == 0) {
                std::string problem =
                    "%" + name + "% in the expression names no DRESP or OPERATOR command";
                if (const std::string meant = closest_identifier(name, container_);
                    !meant.empty()) {
                    problem += "; did you mean %" + meant + "%?";
                }
                return problem;
            }
        }
        try {
            ZentuMathExpressions::create_expression(expression, setup);
        } catch (const KPL_Exception& refusal) {
            return refusal.GetMessage();
        }
        return {};
    }

    // The identifiers that an expression may name: those of the DRESP and OPERATOR commands.
    std::unordered_set<std::string> ResponseIdentifiers() const {
        std::unordered_set<std::string> identifiers;
        for (Cmd kind : {Cmd::DRESP, Cmd::OPERATOR}) {
            for (const auto& command : container_.GetCommands(kind)) {
                identifiers.insert(identifier_of(*command));
            }
        }
        return identifiers;
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
        Report("warning", origin->second.line,
               command.GetName() + (identifier.empty() ? "" : " '" + identifier + "'") + ": " +
                   item.GetName() + " '" + item.GetString() + "' names no command" +
                   did_you_mean(closest_identifier(item.GetString(), container_), "'"));
    }

    // The reader's own failures already start with "path:line: "; the severity goes after it.
    void ReportFileFailure(const std::string& message) {
        ++findings_.errors;
        const std::size_t where =
            message.rfind(path_, 0) == 0 ? message.find(": ", path_.size()) : std::string::npos;
        if (where == std::string::npos) {
            out_ << path_ << ": error: " << one_line(message) << "\n";
        } else {
            out_ << message.substr(0, where + 2) << "error: " << one_line(message.substr(where + 2))
                 << "\n";
        }
    }

    void Report(const char* severity, std::size_t line, const std::string& message) {
        ++(severity[0] == 'e' ? findings_.errors : findings_.warnings);
        out_ << path_;
        if (line > 0) {
            out_ << ":" << line;
        }
        out_ << ": " << severity << ": " << one_line(message) << "\n";
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

int run_check(const std::vector<std::string>& files, const ZentuJobSchema& schema,
              const CheckOptions& options, std::ostream& out) {
    const ZentuCmdIoConfig config = schema.BuildConfig(ZentuCompletion::FULL);
    const ZentuBoundRules::Scope rules(schema.BoundRules());
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
