#include "ZentuJobHover.h"

#include "ZentuCmd.h"
#include "ZentuJobNavigator.h"
#include "ZentuStringUtil.h"
#include "ZentuTypedJob.h"
#include "checks/ZentuExpressionExpansion.h"
#include "navigation/ZentuDocumentSchema.h"

using ZentuCmdDefs::Cmd;

namespace {

// How many items of a named command its summary shows.
constexpr std::size_t SUMMARY_ITEMS = 6;

std::string kind_name(Cmd kind) {
    return ZentuCmdDefs::CMD_NAMES[static_cast<std::size_t>(kind)];
}

// A paragraph, unless the text is empty.
std::string paragraph(const std::string& text) {
    return text.empty() ? "" : "\n\n" + text;
}

std::string describe_command(const ZentuCommandSchema& command) {
    return "**" + command.keyword + "** (" + kind_name(command.kind) + ")" +
           paragraph(command.description);
}

std::string describe_item(const ZentuItemSchema& item) {
    std::string text = "**" + item.name + "**: " + zentu_data_type_name(item.type) +
                       (item.required ? ", required" : "") + (item.multiple ? ", multiple" : "") +
                       paragraph(item.description);
    if (!item.default_value.is_null()) {
        const std::string value = item.default_value.is_string()
                                      ? item.default_value.get<std::string>()
                                      : item.default_value.dump();
        text += "\n\nDefault: `" + value + "`";
    }
    if (!item.keywords.empty()) {
        std::string keywords;
        for (const auto& keyword : item.keywords) {
            keywords += (keywords.empty() ? "`" : ", `") + keyword.first + "`";
        }
        text += "\n\nKeywords: " + keywords;
    }
    return text;
}

// The command as the file writes it: keyword, identifier, where, and its first items.
std::string summarise(const ZentuJobDocument& document, const ZentuJobSchema& schema,
                      std::size_t index) {
    const ZentuDocumentCommand& command = document.Commands()[index];
    const ZentuCommandSchema* described = ZentuDocumentSchema::command_of(schema, command);
    std::string text = "**" + command.keyword + "** `" + command.IdName() + "`" +
                       (described ? " (" + kind_name(described->kind) + ")" : "") + ", line " +
                       std::to_string(command.line) +
                       paragraph(described ? described->description : "") + "\n";
    for (std::size_t i = 0; i < command.items.size() && i < SUMMARY_ITEMS; ++i) {
        text += "\n    " + command.items[i].name + " = " + command.items[i].value;
    }
    return text;
}

// The weights that the operator read from the document command expanded into.
std::string expansion_of(const ZentuTypedJob& job, std::size_t index) {
    for (const auto& command : job.Container().GetCommands(Cmd::OPERATOR)) {
        if (job.OriginOf(*command).command == index) {
            return "Expands to: `" +
                   ZentuExpressionExpansion::weights_text(
                       ZentuExpressionExpansion::expanded_weights(job, *command)) +
                   "`";
        }
    }
    return "Not expanded.";
}

// Collects what there is to say about one position.
class Hoverer {
  public:
    Hoverer(const ZentuJobNavigator& navigator, const ZentuTextPosition& position)
        : navigator_(navigator),
          document_(navigator.Job().Document()),
          schema_(navigator.Schema()),
          position_(position) {}

    std::optional<ZentuHover> Run() const {
        if (const ZentuIdentifierUse* use = navigator_.UseAt(position_)) {
            return OnIdentifier(*use);
        }
        const auto& commands = document_.Commands();
        for (std::size_t c = 0; c < commands.size(); ++c) {
            const ZentuCommandSchema* command =
                ZentuDocumentSchema::command_of(schema_, commands[c]);
            if (zentu_range_touches(commands[c].keyword_range, position_)) {
                return command ? Hover(describe_command(*command), commands[c].keyword_range)
                               : std::nullopt;
            }
            for (const ZentuDocumentItem& item : commands[c].items) {
                if (auto found = OnItem(c, command, item)) {
                    return found;
                }
            }
        }
        return std::nullopt;
    }

  private:
    static std::optional<ZentuHover> Hover(std::string text, const ZentuTextRange& range) {
        return ZentuHover{std::move(text), range};
    }

    std::optional<ZentuHover> OnIdentifier(const ZentuIdentifierUse& use) const {
        const ZentuIdentifierUse* definition = navigator_.DefinitionOf(use);
        if (definition == nullptr) {
            return Hover("No command is named `" + use.identifier + "`.", use.range);
        }
        return Hover(summarise(document_, schema_, definition->command), use.range);
    }

    std::optional<ZentuHover> OnItem(std::size_t index, const ZentuCommandSchema* command,
                                     const ZentuDocumentItem& item) const {
        const ZentuItemSchema* described = ZentuDocumentSchema::item_of(command, item);
        if (described != nullptr && zentu_range_touches(item.name_range, position_)) {
            return Hover(describe_item(*described), item.name_range);
        }
        if (ZentuDocumentSchema::is_expression(command, described) &&
            zentu_range_touches(item.value_range, position_)) {
            return Hover(expansion_of(navigator_.Job(), index) + Mismatch(item), item.value_range);
        }
        return std::nullopt;
    }

    // The expression-mismatch finding on the item's lines, as a paragraph.
    std::string Mismatch(const ZentuDocumentItem& item) const {
        for (const ZentuFinding& finding : navigator_.Job().Findings()) {
            if (finding.code == ZentuFindingCodes::EXPRESSION_MISMATCH &&
                finding.range.line >= item.line && finding.range.line <= item.last_line) {
                return paragraph(std::string(zentu_severity_name(finding.severity)) + " [" +
                                 finding.code + "]: " + finding.message);
            }
        }
        return "";
    }

    const ZentuJobNavigator& navigator_;
    const ZentuJobDocument& document_;
    const ZentuJobSchema& schema_;
    const ZentuTextPosition position_;
};

}  // namespace

std::optional<ZentuHover> zentu_hover(const ZentuJobNavigator& navigator,
                                      const ZentuTextPosition& position) {
    return Hoverer(navigator, position).Run();
}
