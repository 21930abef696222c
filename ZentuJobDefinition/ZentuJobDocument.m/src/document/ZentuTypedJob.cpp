#include "ZentuTypedJob.h"

#include <algorithm>
#include <array>
#include <bitset>
#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "KPL_Failure.h"
#include "ZentuCmd.h"
#include "ZentuCmdContainerRules.h"
#include "ZentuCmdIdentifier.h"
#include "ZentuCmdItem.h"
#include "ZentuCmdItemFactory.h"
#include "ZentuCmdMetaData.h"
#include "ZentuCmdNameLookup.h"
#include "ZentuDrespExpressionParser.h"
#include "ZentuJobChecks.h"
#include "ZentuJobDocumentMessages.h"
#include "ZentuMathExpressions.h"
#include "ZentuStringUtil.h"
#include "ZentuSuggestion.h"
#include "checks/ZentuExpressionArithmetic.h"
#include "checks/ZentuTextTable.h"
#include "document/ZentuCommandItems.h"

namespace Messages = ZentuJobDocumentMessages;
using ZentuCmdDefs::Cmd;
using ZentuCmdItemDefs::CmdItem;
using ZentuCmdItemDefs::DataType;

namespace {

// The reference mark around an identifier in an expression.
constexpr char REFERENCE_MARK = '%';

// The failure that the rule engine raises for a command whose keyword it cannot find.
constexpr const char* MISSING_CONFIGURATION_ID = "202810221842";

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

// "; did you mean X?" with X quoted, or nothing when nothing is close.
std::string did_you_mean(const std::string& meant, const std::string& quote) {
    return meant.empty()
               ? std::string()
               : KPL_Failure::Format(Messages::DID_YOU_MEAN, (quote + meant + quote).c_str());
}

std::optional<std::string> suggestion_of(const std::string& meant) {
    return meant.empty() ? std::nullopt : std::optional<std::string>(meant);
}

// How deep the parentheses of an expression nest.
std::size_t nesting_of(const std::string& text) {
    std::size_t depth = 0;
    std::size_t deepest = 0;
    for (const char c : text) {
        depth = c == '(' ? depth + 1 : (c == ')' && depth > 0 ? depth - 1 : depth);
        deepest = std::max(deepest, depth);
    }
    return deepest;
}

bool precedes(const ZentuFinding& a, const ZentuFinding& b) {
    return std::tie(a.range.line, a.range.column) < std::tie(b.range.line, b.range.column);
}

// The identifiers of the DRESP and OPERATOR commands, which the references of an expression name,
// in one vector indexed by a flat table, where a hash set would allocate a node for each.
class ResponseIdentifiers {
  public:
    explicit ResponseIdentifiers(const ZentuCmdContainer& container) : index_(CountOf(container)) {
        identifiers_.reserve(CountOf(container));
        for (const Cmd kind : RESPONSE_KINDS) {
            for (const auto& command : container.GetCommands(kind)) {
                // The room taken above keeps every identifier, and the text the table views, in
                // place.
                identifiers_.push_back(ZentuCmdIdentifier::text_of(*command));
                index_.Insert(identifiers_.back(), true);
            }
        }
    }

    // Whether a response bears the identifier.
    bool Contains(std::string_view identifier) const { return index_.Find(identifier) != nullptr; }

  private:
    // The kinds of command that an expression refers to.
    static constexpr std::array<Cmd, 2> RESPONSE_KINDS{Cmd::DRESP, Cmd::OPERATOR};

    // How many commands of those kinds the container holds.
    static std::size_t CountOf(const ZentuCmdContainer& container) {
        return container.GetNumberOfCommands(Cmd::DRESP) +
               container.GetNumberOfCommands(Cmd::OPERATOR);
    }

    std::vector<std::string> identifiers_;
    ZentuTextTable<bool> index_;
};

}  // namespace

// Types one document into its container, mirroring what the parameter-file reader does, and
// reports every problem instead of stopping at the first.
class ZentuTypedJobReader {
  public:
    ZentuTypedJobReader(ZentuTypedJob& job, const ZentuJobSchema& schema,
                        ZentuCompletion completion)
        : job_(job),
          configHolder_(schema.SharedConfig(completion)),
          config_(*configHolder_),
          names_(config_),
          schema_(schema) {}

    void Read(ZentuCompletion completion) {
        const auto& commands = job_.document_.Commands();
        ReserveOrigins();
        for (std::size_t index = 0; index < commands.size(); ++index) {
            job_.firstReadItems_.push_back(job_.readItems_.size());
            ReadCommand(index);
        }
        job_.firstReadItems_.push_back(job_.readItems_.size());
        const bool readable = std::none_of(
            job_.document_.Findings().begin(), job_.document_.Findings().end(),
            [](const ZentuFinding& finding) { return finding.code == ZentuFindingCodes::IO; });
        if (completion == ZentuCompletion::FULL && readable) {
            Complete();
            TraceGeneratedCommands();
            CheckReferences();
            ZentuJobChecks::run_all(job_, schema_, job_.findings_);
        }
        job_.findings_.insert(job_.findings_.begin(), job_.document_.Findings().begin(),
                              job_.document_.Findings().end());
        ZentuJobChecks::apply_suppressions(job_.document_, job_.findings_);
        std::stable_sort(job_.findings_.begin(), job_.findings_.end(), precedes);
    }

  private:
    // Room for the origin of every command and item of the file, taken at once; the commands'
    // table grows only for the few commands that defaults and rules add.
    void ReserveOrigins() {
        std::size_t items = 0;
        for (const ZentuDocumentCommand& command : job_.document_.Commands()) {
            items += command.items.size();
        }
        job_.readItems_.reserve(items);
        job_.firstReadItems_.reserve(job_.document_.Commands().size() + 1);
        job_.commandOrigins_.Reserve(job_.document_.Commands().size());
    }

    // The text upper-cased as ZentuStringUtil::to_upper does it, in the reused buffer.
    const std::string& Upper(std::string_view text) {
        ZentuStringUtil::to_upper_into(text, upper_);
        return upper_;
    }

    const ZentuDocumentCommand& DocumentCommand(std::size_t index) const {
        return job_.document_.Commands()[index];
    }

    void Report(const char* code, const std::string& message, const ZentuTextRange& range,
                const std::string& suggestion = {}) {
        job_.findings_.push_back(
            zentu_finding(code, one_line(message), range, suggestion_of(suggestion)));
    }

    void ReadCommand(std::size_t index) {
        const ZentuDocumentCommand& parsed = DocumentCommand(index);
        ZentuCmdNameLookup::KnownCommand& known = names_.CommandOf(parsed.keyword);
        if (known.description == nullptr) {
            ReportUnknownCommand(parsed);
        }
        const ZentuCmdMetaData& description =
            known.description != nullptr ? *known.description : unknownCommand_;
        ZentuCmd& command = job_.container_.CreateCommand(description.GetKey(), parsed.keyword);
        job_.commandOrigins_.Insert(&command, ZentuOrigin{index, ZentuOrigin::NONE});
        for (std::size_t item = 0; item < parsed.items.size(); ++item) {
            ReadItem(index, item, known, description, command);
        }
        ZentuCmdContainerRules::add_default_valued_items(command, description, config_.enum_map);
    }

    void ReportUnknownCommand(const ZentuDocumentCommand& parsed) {
        if (!keywords_) {
            std::vector<std::string> keywords;
            for (const ZentuCommandSchema& command : schema_.commands) {
                keywords.push_back(command.keyword);
            }
            std::sort(keywords.begin(), keywords.end());
            keywords_.emplace(std::move(keywords));
        }
        const std::string meant = keywords_->Closest(parsed.keyword);
        Report(ZentuFindingCodes::UNKNOWN_COMMAND,
               KPL_Failure::Format(Messages::UNKNOWN_COMMAND, parsed.keyword.c_str()) +
                   did_you_mean(meant, "'"),
               parsed.keyword_range, meant);
    }

    void ReadItem(std::size_t commandIndex, std::size_t itemIndex,
                  ZentuCmdNameLookup::KnownCommand& known, const ZentuCmdMetaData& description,
                  ZentuCmd& command) {
        const ZentuDocumentCommand& parsed = DocumentCommand(commandIndex);
        const ZentuDocumentItem& written = parsed.items[itemIndex];
        const ZentuCmdNameLookup::KnownItem& name = names_.ItemOf(written.name, known);
        if (name.metadata == nullptr) {
            if (!name.name.empty()) {
                ReportUnknownItem(parsed, written, name.name, description);
            }
            return;
        }
        const ZentuCmdItemMetaData& metadata = *name.metadata;
        try {
            std::unique_ptr<ZentuCmdItem> item =
                ZentuCmdItemFactory::create(name.name, written.value, metadata, config_.enum_map);
            const bool reference = metadata.type == DataType::REFERENCE;
            job_.readItems_.push_back(ZentuTypedJob::ReadItem{item.get(), itemIndex, reference});
            if (reference) {
                referenceKinds_.set(static_cast<std::size_t>(metadata.key));
            }
            command.AddItem(metadata.key, std::move(item));
        } catch (const KPL_Exception& refusal) {
            Report(ZentuFindingCodes::BAD_VALUE, refusal.GetMessage(), written.value_range);
        }
    }

    void ReportUnknownItem(const ZentuDocumentCommand& parsed, const ZentuDocumentItem& written,
                           const std::string& name, const ZentuCmdMetaData& description) {
        auto suggestions = itemNames_.find(&description);
        if (suggestions == itemNames_.end()) {
            std::vector<std::string> names;
            for (const auto& entry : description.GetMetaData()) {
                names.push_back(entry.first);
            }
            suggestions =
                itemNames_.emplace(&description, ZentuSuggestions(std::move(names))).first;
        }
        const std::string meant = suggestions->second.Closest(name);
        const std::string withId =
            parsed.IdName().empty() ? std::string() : Messages::WITH_ID_NAME + parsed.IdName();
        std::string message = KPL_Failure::Format(Messages::UNKNOWN_ITEM, name.c_str(),
                                                  parsed.keyword.c_str(), withId.c_str());
        if (!meant.empty()) {
            // The suggestion continues the sentence, so its full stop goes.
            message.pop_back();
        }
        Report(ZentuFindingCodes::UNKNOWN_ITEM, message + did_you_mean(meant, "'"),
               written.name_range, meant);
    }

    // An expression is checked where its place is known: the expression rule hands over each one
    // that it cannot read and goes on with the next, so that the others are still expanded and
    // every fault of the file is reported in one run, without reading an expression twice. Only
    // the depth of an expression is judged before the rule, which would meet a deep one with time
    // and memory. When the schema has no expression rule, or a rule before it fails, every
    // expression is read here instead.
    void TakeOutExpressions(bool deepOnly) {
        ZentuCmdContainer& container = job_.container_;
        std::optional<std::vector<ZentuMathExpressions::TokenDescription>> setup;
        for (std::size_t i = 0; i < container.GetNumberOfCommands(Cmd::OPERATOR); ++i) {
            ZentuCmd& command = container.GetCommand(Cmd::OPERATOR, i);
            if (!command.HasItem(CmdItem::ADD_FILE, 0) ||
                !command.Item(CmdItem::ADD_FILE, 0).HasString()) {
                continue;
            }
            const ZentuCmdItem& expression = command.Item(CmdItem::ADD_FILE, 0);
            const std::string& text = expression.GetString();
            bool faulty = TooDeep(command, expression, text);
            if (!faulty && !deepOnly) {
                if (!setup) {
                    setup = ZentuDrespExpressionParser::create_token_setup(container);
                }
                faulty = Unreadable(command, expression, text, *setup);
            }
            if (faulty) {
                command.Erase(CmdItem::ADD_FILE, command.begin(CmdItem::ADD_FILE));
            }
        }
    }

    // Reports an expression that the rule could not read: a reference that names no response,
    // with the identifier probably meant, else the tokenizer's refusal.
    void ReportUnreadable(const ZentuCmd& command, const ZentuCmdItem& expression,
                          const KPL_Exception& refusal) {
        const std::string& text = expression.GetString();
        if (!NamesNoResponse(command, expression, text)) {
            ReportExpression(ZentuFindingCodes::EXPRESSION_SYNTAX, refusal.GetMessage(), command,
                             expression, 0, text.size());
        }
    }

    // Reports an expression nested too deep; each level becomes a generated operator whose name
    // holds the levels inside it, so a deep expression would cost time and memory that grow with
    // the square of it.
    bool TooDeep(const ZentuCmd& command, const ZentuCmdItem& expression, const std::string& text) {
        const std::size_t depth = nesting_of(text);
        if (depth <= ZentuExpressionArithmetic::MAX_DEPTH) {
            return false;
        }
        ReportExpression(ZentuFindingCodes::EXPRESSION_UNSUPPORTED,
                         KPL_Failure::Format(Messages::EXPRESSION_TOO_DEEP, depth,
                                             ZentuExpressionArithmetic::MAX_DEPTH),
                         command, expression, 0, text.size());
        return true;
    }

    // Reports the first reference of an expression that names no response, with the identifier
    // probably meant.
    bool NamesNoResponse(const ZentuCmd& command, const ZentuCmdItem& expression,
                         const std::string& text) {
        if (!responses_) {
            responses_.emplace(job_.container_);
        }
        for (std::size_t open = text.find(REFERENCE_MARK); open != std::string::npos;) {
            const std::size_t close = text.find(REFERENCE_MARK, open + 1);
            if (close == std::string::npos) {
                break;
            }
            const std::string_view name = std::string_view(text).substr(open + 1, close - open - 1);
            if (!responses_->Contains(Upper(name))) {
                const std::string meant = ClosestIdentifier(std::string(name));
                ReportExpression(ZentuFindingCodes::EXPRESSION_SYNTAX,
                                 KPL_Failure::Format(Messages::EXPRESSION_NAMES_NO_RESPONSE,
                                                     std::string(name).c_str()) +
                                     did_you_mean(meant, "%"),
                                 command, expression, open, close + 1,
                                 meant.empty() ? meant : REFERENCE_MARK + meant + REFERENCE_MARK);
                return true;
            }
            open = text.find(REFERENCE_MARK, close + 1);
        }
        return false;
    }

    // Reports an expression that the tokenizer refuses, as the rule would hand it over.
    bool Unreadable(const ZentuCmd& command, const ZentuCmdItem& expression,
                    const std::string& text,
                    const std::vector<ZentuMathExpressions::TokenDescription>& setup) {
        try {
            ZentuMathExpressions::create_expression(text, setup, tokens_);
        } catch (const KPL_Exception& refusal) {
            ReportUnreadable(command, expression, refusal);
            return true;
        }
        return false;
    }

    // Reports a finding on the bytes [begin, end) of an expression; where the expression stands
    // is looked up only for a report, as most expressions are sound.
    void ReportExpression(const char* code, const std::string& message, const ZentuCmd& command,
                          const ZentuCmdItem& expression, std::size_t begin, std::size_t end,
                          const std::string& suggestion = {}) {
        Report(code, message, ValueRange(job_.OriginOf(command, expression), begin, end),
               suggestion);
    }

    // The range of bytes [begin, end) of an item's value; its command's keyword for an item that
    // the file does not hold.
    ZentuTextRange ValueRange(const ZentuOrigin& origin, std::size_t begin, std::size_t end) const {
        if (origin.item == ZentuOrigin::NONE) {
            return CommandRange(origin);
        }
        return job_.document_.ValueRange(DocumentCommand(origin.command).items[origin.item], begin,
                                         end);
    }

    // The keyword of the command of an origin, or the file's start when it has none.
    ZentuTextRange CommandRange(const ZentuOrigin& origin) const {
        return origin.command == ZentuOrigin::NONE ? ZentuTextRange{}
                                                   : DocumentCommand(origin.command).keyword_range;
    }

    // The identifier that text most probably meant. The identifiers are gathered once, each
    // once, so that a file of many references and many commands stays fast.
    std::string ClosestIdentifier(const std::string& text) {
        if (!identifiers_) {
            std::unordered_set<std::string> unique;
            for (const ZentuCmd& command : job_.container_) {
                unique.insert(ZentuCmdIdentifier::text_of(command));
            }
            std::vector<std::string> identifiers(unique.begin(), unique.end());
            std::sort(identifiers.begin(), identifiers.end());
            identifiers_.emplace(std::move(identifiers));
        }
        return identifiers_->Closest(text);
    }

    void Complete() {
        const bool ruleReadsExpressions = ReadsExpressions(config_);
        TakeOutExpressions(ruleReadsExpressions);
        const ZentuDrespExpressionParser::UnreadableExpressions unreadable(
            [this](const ZentuCmd& command, const ZentuCmdItem& expression,
                   const KPL_Exception& refusal) {
                ReportUnreadable(command, expression, refusal);
            });
        try {
            std::array<std::size_t, ZentuCmdDefs::CMD_KIND_COUNT> before{};
            for (std::size_t kind = 0; kind < before.size(); ++kind) {
                before[kind] = job_.container_.GetNumberOfCommands(static_cast<Cmd>(kind));
            }
            ZentuCmdContainerRules::create_default_commands(job_.container_, config_.cmd_metadata,
                                                            config_.enum_map);
            MarkDefaultCommands(before);
            job_.container_.CreateReferences();
            const ZentuBoundRules::Scope rules(schema_.BoundRules());
            ZentuCmdContainerRules::apply_rules(job_.container_, config_);
        } catch (const KPL_Exception& failure) {
            ReportRuleFailure(failure);
        }
        if (ruleReadsExpressions && !unreadable.RuleRan()) {
            TakeOutExpressions(false);
        }
    }

    // Whether the configuration's rules include the expression rule.
    static bool ReadsExpressions(const ZentuCmdIoConfig& config) {
        const auto& rules = config.GetContainerManipulatorRules();
        return std::find(rules.begin(), rules.end(),
                         &ZentuDrespExpressionParser::dresp_expression_rule) != rules.end();
    }

    // The rule engine fails on a command whose keyword, as written, no description carries: a
    // keyword in lower case that the reader itself found.
    void ReportRuleFailure(const KPL_Exception& failure) {
        if (failure.GetId() == MISSING_CONFIGURATION_ID) {
            for (const ZentuDocumentCommand& command : job_.document_.Commands()) {
                const std::string upper = ZentuStringUtil::to_upper(command.keyword);
                if (upper != command.keyword && config_.cmd_metadata.count(upper) != 0) {
                    Report(
                        ZentuFindingCodes::KEYWORD_CASE,
                        KPL_Failure::Format(Messages::KEYWORD_NOT_UPPER_CASE,
                                            command.keyword.c_str(), failure.GetMessage().c_str()),
                        command.keyword_range, upper);
                    return;
                }
            }
        }
        Report(ZentuFindingCodes::EXPRESSION_SYNTAX, failure.GetMessage(), ZentuTextRange{});
    }

    // Default commands come from the schema, not from the file: they stay without origin, also
    // when a command of the file refers to them. They follow the commands of their kind that were
    // there before.
    void MarkDefaultCommands(const std::array<std::size_t, ZentuCmdDefs::CMD_KIND_COUNT>& before) {
        for (std::size_t kind = 0; kind < before.size(); ++kind) {
            const auto& commands = job_.container_.GetCommands(static_cast<Cmd>(kind));
            for (std::size_t index = before[kind]; index < commands.size(); ++index) {
                job_.commandOrigins_.Insert(commands[index].get(), ZentuOrigin{});
            }
        }
    }

    // Commands that rules generated take the origin of the first traced command that refers to
    // them, so that what is said about them points at what made them.
    void TraceGeneratedCommands() {
        if (zentu_command_count(job_.container_) == job_.commandOrigins_.Size()) {
            return;  // every command comes from the file or is a default: none was generated
        }
        std::vector<const ZentuCmd*> traced;
        for (const ZentuCmd& command : job_.container_) {
            if (job_.OriginOf(command).command != ZentuOrigin::NONE) {
                traced.push_back(&command);
            }
        }
        for (std::size_t next = 0; next < traced.size(); ++next) {
            const ZentuCmd& command = *traced[next];
            const ZentuOrigin origin = job_.OriginOf(command);
            zentu_for_each_item(command, [&](const ZentuCmdItem& item) {
                const ZentuCmd* target = item.HasReference() ? item.GetReference() : nullptr;
                if (target != nullptr &&
                    job_.commandOrigins_.Insert(target, job_.ItemOriginOf(origin, item))) {
                    traced.push_back(target);
                }
            });
        }
    }

    // Only the commands that may hold an item of a reference kind are looked up and into.
    void CheckReferences() {
        const std::uint64_t referenceKinds = referenceKinds_.to_ullong();
        for (const ZentuCmd& command : job_.container_) {
            const std::uint64_t kinds = command.KindsWithSequences() & referenceKinds;
            if (kinds == 0) {
                continue;
            }
            const ZentuOrigin origin = job_.OriginOf(command);
            for (std::size_t kind = 0; kind < referenceKinds_.size(); ++kind) {
                if ((kinds >> kind & 1U) == 0) {
                    continue;
                }
                for (const auto& item : command.GetItemRange(static_cast<CmdItem>(kind))) {
                    CheckReference(command, origin, *item);
                }
            }
        }
    }

    // An item that took the place of an erased reference of the file is no reference of the file.
    void CheckReference(const ZentuCmd& command, const ZentuOrigin& origin,
                        const ZentuCmdItem& item) {
        const ZentuTypedJob::ReadItem* read = job_.FindReadItem(origin, item);
        if (read == nullptr || !read->reference) {
            return;
        }
        if (item.HasReference()) {
            ++job_.resolved_;
            return;
        }
        ++job_.unresolved_;
        const std::string identifier = ZentuCmdIdentifier::text_of(command);
        const std::string meant = ClosestIdentifier(item.GetString());
        Report(ZentuFindingCodes::DANGLING_REFERENCE,
               KPL_Failure::Format(Messages::REFERENCE_NAMES_NO_COMMAND, command.GetName().c_str(),
                                   identifier.empty() ? "" : (" '" + identifier + "'").c_str(),
                                   item.GetName().c_str(), item.GetString().c_str()) +
                   did_you_mean(meant, "'"),
               DocumentCommand(origin.command).items[read->index].value_range, meant);
    }

    ZentuTypedJob& job_;
    // The schema's configuration, shared with its other readings.
    const std::shared_ptr<const ZentuCmdIoConfig> configHolder_;
    const ZentuCmdIoConfig& config_;
    // The descriptions of the keywords and item names met.
    ZentuCmdNameLookup names_;
    const ZentuJobSchema& schema_;
    const ZentuCmdMetaData unknownCommand_;
    // The item kinds that hold the reference items read from the file, which CheckReferences
    // judges: the only kinds it looks at.
    std::bitset<ZentuCmdItemDefs::CMD_ITEM_KIND_COUNT> referenceKinds_;
    // The tokens of the expression checked last, whose room the next one reuses.
    std::vector<ZentuMathExpressions::Token> tokens_;
    // The identifiers that an expression's references may name, once an expression is faulty.
    std::optional<ResponseIdentifiers> responses_;
    // The identifiers of the completed job, sorted, once asked for.
    std::optional<ZentuSuggestions> identifiers_;
    // The schema's command keywords, sorted, once asked for.
    std::optional<ZentuSuggestions> keywords_;
    // The item names of each command description that an unknown item was met in.
    std::unordered_map<const ZentuCmdMetaData*, ZentuSuggestions> itemNames_;
    // The upper-case keyword, item name or reference looked up last, whose room the next one
    // reuses.
    std::string upper_;
};

ZentuTypedJob::ZentuTypedJob(ZentuJobDocument document, const ZentuJobSchema& schema,
                             ZentuCompletion completion)
    : document_(std::move(document)) {
    ZentuTypedJobReader(*this, schema, completion).Read(completion);
}

ZentuTypedJob ZentuTypedJob::ReadFile(const std::string& path, const ZentuJobSchema& schema,
                                      ZentuCompletion completion) {
    return ZentuTypedJob(ZentuJobDocument::FromFile(path, KeywordTestOf(schema)), schema,
                         completion);
}

ZentuTypedJob ZentuTypedJob::ReadText(std::string text, const std::string& path,
                                      const ZentuJobSchema& schema, ZentuCompletion completion) {
    return ZentuTypedJob(ZentuJobDocument::FromText(std::move(text), path, KeywordTestOf(schema)),
                         schema, completion);
}

ZentuJobDocument::KeywordTest ZentuTypedJob::KeywordTestOf(const ZentuJobSchema& schema) {
    return [&schema](std::string_view name, std::string_view openKeyword) {
        const std::string upper = ZentuStringUtil::to_upper(std::string(name));
        if (schema.FindCommand(upper) == nullptr) {
            return false;
        }
        const ZentuCommandSchema* open =
            schema.FindCommand(ZentuStringUtil::to_upper(std::string(openKeyword)));
        return open == nullptr || open->FindItem(upper) == nullptr;
    };
}

bool ZentuTypedJob::HasErrors() const {
    return std::any_of(findings_.begin(), findings_.end(), [](const ZentuFinding& finding) {
        return finding.severity == ZentuSeverity::ERROR;
    });
}

void ZentuTypedJob::OverrideSeverities(
    const std::vector<ZentuJobChecks::SeverityOverride>& overrides) {
    ZentuJobChecks::apply_overrides(overrides, findings_);
}

ZentuOrigin ZentuTypedJob::OriginOf(const ZentuCmd& command) const {
    const ZentuOrigin* found = commandOrigins_.Find(&command);
    return found == nullptr ? ZentuOrigin{} : *found;
}

ZentuOrigin ZentuTypedJob::OriginOf(const ZentuCmd& command, const ZentuCmdItem& item) const {
    return ItemOriginOf(OriginOf(command), item);
}

ZentuOrigin ZentuTypedJob::ItemOriginOf(const ZentuOrigin& commandOrigin,
                                        const ZentuCmdItem& item) const {
    const ReadItem* read = FindReadItem(commandOrigin, item);
    return ZentuOrigin{commandOrigin.command, read == nullptr ? ZentuOrigin::NONE : read->index};
}

const ZentuTypedJob::ReadItem* ZentuTypedJob::FindReadItem(const ZentuOrigin& commandOrigin,
                                                           const ZentuCmdItem& item) const {
    // Only a command read from the file has items read from it; a generated command carries the
    // origin of what generated it, item included, or that of a command whose rule added it.
    const std::size_t c = commandOrigin.command;
    if (c == ZentuOrigin::NONE || commandOrigin.item != ZentuOrigin::NONE) {
        return nullptr;
    }
    const std::vector<ZentuDocumentItem>& written = document_.Commands()[c].items;
    const auto first = readItems_.begin() + static_cast<std::ptrdiff_t>(firstReadItems_[c]);
    const auto last = readItems_.begin() + static_cast<std::ptrdiff_t>(firstReadItems_[c + 1]);
    // A rule may erase an item of the file (the expression rule erases the expression) and add one
    // that takes the freed address: an entry holds only for an item that bears the name written.
    const auto found = std::find_if(first, last, [&](const ReadItem& read) {
        return read.item == &item &&
               ZentuStringUtil::equals_ignoring_case(written[read.index].name, item.GetName());
    });
    return found == last ? nullptr : &*found;
}
