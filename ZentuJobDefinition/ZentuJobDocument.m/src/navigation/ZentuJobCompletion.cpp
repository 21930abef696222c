#include "ZentuJobCompletion.h"

#include <algorithm>
#include <set>

#include "ZentuJobNavigator.h"
#include "ZentuStringUtil.h"
#include "ZentuTypedJob.h"
#include "navigation/ZentuDocumentSchema.h"

using ZentuCmdDefs::Cmd;
using ZentuCmdItemDefs::DataType;
using Kind = ZentuCompletionCandidate::Kind;

namespace {

// The marks around a term of an expression.
constexpr const char* TERM_MARK = "%";

// Collects the candidates for one position.
class Completer {
  public:
    Completer(const ZentuJobNavigator& navigator, const ZentuTextPosition& position)
        : navigator_(navigator),
          document_(navigator.Job().Document()),
          schema_(navigator.Schema()),
          position_(position) {}

    std::vector<ZentuCompletionCandidate> Run() {
        if (position_.line < 1 || position_.line > document_.LineCount()) {
            AddKeywords();
            return std::move(candidates_);
        }
        const ZentuDocumentLine& line = document_.Lines()[position_.line - 1];
        if (line.command == ZentuDocumentLine::NONE ||
            line.scanned.kind == ZentuParLine::Kind::KEYWORD ||
            line.scanned.kind == ZentuParLine::Kind::END) {
            AddKeywords();
        } else if (const auto named = ValueItemName(line)) {
            AddValues(line.command, *named);
        } else {
            AddItemNames(line);
        }
        return std::move(candidates_);
    }

  private:
    void AddKeywords() {
        for (const ZentuCommandSchema& command : schema_.commands) {
            candidates_.push_back({Kind::KEYWORD, command.keyword,
                                   ZentuCmdDefs::CMD_NAMES[static_cast<std::size_t>(command.kind)],
                                   command.description});
        }
    }

    // The name of the item whose value the position is in: after the '=' of its line, or on one
    // of its value lines; nothing elsewhere.
    std::optional<std::string> ValueItemName(const ZentuDocumentLine& line) const {
        const std::string_view text = document_.LineText(position_.line);
        const std::size_t separator = text.find('=');
        if (separator != std::string_view::npos &&
            document_.OffsetOf(position_.line, position_.column) > separator) {
            std::string name(text.substr(0, separator));
            ZentuStringUtil::Trim(name);
            return name;
        }
        if (line.scanned.kind == ZentuParLine::Kind::VALUE &&
            line.item != ZentuDocumentLine::NONE) {
            return document_.Commands()[line.command].items[line.item].name;
        }
        return std::nullopt;
    }

    // The items of the command's description that it does not hold yet, on lines other than the
    // position's, or that it may hold more than once.
    void AddItemNames(const ZentuDocumentLine& line) {
        const ZentuDocumentCommand& command = document_.Commands()[line.command];
        const ZentuCommandSchema* described = ZentuDocumentSchema::command_of(schema_, command);
        if (described == nullptr) {
            return;
        }
        std::set<std::string> given;
        for (const ZentuDocumentItem& item : command.items) {
            if (item.line != position_.line) {
                given.insert(ZentuStringUtil::to_upper(item.name));
            }
        }
        for (const ZentuItemSchema& item : described->items) {
            if (item.multiple || given.count(item.name) == 0) {
                candidates_.push_back(
                    {Kind::ITEM, item.name, zentu_data_type_name(item.type), item.description});
            }
        }
    }

    void AddValues(std::size_t commandIndex, const std::string& name) {
        const ZentuCommandSchema* command =
            ZentuDocumentSchema::command_of(schema_, document_.Commands()[commandIndex]);
        const ZentuItemSchema* item =
            command == nullptr ? nullptr : command->FindItem(ZentuStringUtil::to_upper(name));
        if (item == nullptr) {
            return;
        }
        if (item->type == DataType::ENUM) {
            for (const auto& keyword : item->keywords) {
                candidates_.push_back({Kind::VALUE, keyword.first, item->name, item->description});
            }
        } else if (ZentuDocumentSchema::is_expression(command, item)) {
            AddIdentifiers({Cmd::DRESP, Cmd::OPERATOR}, TERM_MARK);
        } else if (const Cmd kind = ZentuDocumentSchema::referenced_kind(item);
                   kind != Cmd::CMD_PLACEHOLDER) {
            AddIdentifiers({kind}, "");
        }
    }

    // The identifiers of the commands of the kinds, as written, each between the marks.
    void AddIdentifiers(std::initializer_list<Cmd> kinds, const std::string& mark) {
        for (const ZentuIdentifierUse& use : navigator_.Uses()) {
            if (use.role != ZentuIdentifierUse::Role::DEFINITION ||
                std::find(kinds.begin(), kinds.end(), use.kind) == kinds.end()) {
                continue;
            }
            const ZentuDocumentCommand& command = document_.Commands()[use.command];
            const ZentuCommandSchema* described = ZentuDocumentSchema::command_of(schema_, command);
            std::string label = mark;
            label.append(command.items[use.item].value).append(mark);
            candidates_.push_back({Kind::IDENTIFIER, std::move(label), command.keyword,
                                   described == nullptr ? std::string() : described->description});
        }
    }

    const ZentuJobNavigator& navigator_;
    const ZentuJobDocument& document_;
    const ZentuJobSchema& schema_;
    const ZentuTextPosition position_;
    std::vector<ZentuCompletionCandidate> candidates_;
};

}  // namespace

std::vector<ZentuCompletionCandidate> zentu_completions(const ZentuJobNavigator& navigator,
                                                        const ZentuTextPosition& position) {
    return Completer(navigator, position).Run();
}
