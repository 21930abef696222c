#include "ZentuIdentifierUse.h"

#include "ZentuJobDocument.h"
#include "ZentuJobSchema.h"
#include "ZentuStringUtil.h"
#include "navigation/ZentuDocumentSchema.h"

using ZentuCmdDefs::Cmd;
using Role = ZentuIdentifierUse::Role;

namespace {

// The separator of the elements of a list of references.
constexpr char LIST_SEPARATOR = ',';
// The marks around a term of an expression.
constexpr char TERM_MARK = '%';

// Collects the uses of one item's value.
class ItemUses {
  public:
    ItemUses(const ZentuJobDocument& document, std::size_t command, std::size_t item,
             std::vector<ZentuIdentifierUse>& uses)
        : document_(document), command_(command), item_(item), uses_(uses) {}

    // The whole value of each line, or each of its comma-separated elements.
    void AddWords(Role role, Cmd kind, bool list) {
        for (const auto& span : ZentuDocumentSchema::value_spans(document_, command_, item_)) {
            std::size_t begin = span.begin;
            while (begin < span.end) {
                const std::size_t separator =
                    list ? Line(span).find(LIST_SEPARATOR, begin) : span.end;
                const std::size_t end = std::min(separator, span.end);
                Add(role, kind, span.line, begin, end);
                begin = end + 1;
            }
        }
    }

    // The names between pairs of marks.
    void AddTerms() {
        for (const auto& span : ZentuDocumentSchema::value_spans(document_, command_, item_)) {
            const std::string_view line = Line(span);
            for (std::size_t open = line.find(TERM_MARK, span.begin); open < span.end;) {
                const std::size_t close = line.find(TERM_MARK, open + 1);
                if (close >= span.end) {
                    break;
                }
                Add(Role::EXPRESSION_TERM, Cmd::CMD_PLACEHOLDER, span.line, open + 1, close);
                open = line.find(TERM_MARK, close + 1);
            }
        }
    }

  private:
    std::string_view Line(const ZentuDocumentSchema::ValueSpan& span) const {
        return document_.LineText(span.line);
    }

    // Adds bytes [begin, end) of the line, blanks around them cut, unless nothing is left.
    void Add(Role role, Cmd kind, std::size_t line, std::size_t begin, std::size_t end) {
        const std::string_view text = document_.LineText(line);
        while (begin < end && (text[begin] == ' ' || text[begin] == '\t')) {
            ++begin;
        }
        while (end > begin && (text[end - 1] == ' ' || text[end - 1] == '\t')) {
            --end;
        }
        if (begin == end) {
            return;
        }
        const std::string identifier =
            ZentuStringUtil::to_upper(std::string(text.substr(begin, end - begin)));
        uses_.push_back(
            {role, identifier, document_.RangeOf(line, begin, end), command_, item_, kind});
    }

    const ZentuJobDocument& document_;
    std::size_t command_;
    std::size_t item_;
    std::vector<ZentuIdentifierUse>& uses_;
};

}  // namespace

std::vector<ZentuIdentifierUse> zentu_identifier_uses(const ZentuJobDocument& document,
                                                      const ZentuJobSchema& schema) {
    std::vector<ZentuIdentifierUse> uses;
    const auto& commands = document.Commands();
    for (std::size_t c = 0; c < commands.size(); ++c) {
        const ZentuCommandSchema* command = ZentuDocumentSchema::command_of(schema, commands[c]);
        for (std::size_t i = 0; i < commands[c].items.size(); ++i) {
            const ZentuItemSchema* item =
                ZentuDocumentSchema::item_of(command, commands[c].items[i]);
            ItemUses itemUses(document, c, i, uses);
            if (ZentuDocumentSchema::is_identifier(item)) {
                itemUses.AddWords(Role::DEFINITION, command->kind, false);
            } else if (ZentuDocumentSchema::is_expression(command, item)) {
                itemUses.AddTerms();
            } else if (const Cmd kind = ZentuDocumentSchema::referenced_kind(item);
                       kind != Cmd::CMD_PLACEHOLDER) {
                itemUses.AddWords(Role::REFERENCE, kind, true);
            }
        }
    }
    return uses;
}
