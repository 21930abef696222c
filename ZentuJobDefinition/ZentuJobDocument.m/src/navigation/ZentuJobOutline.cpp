#include "ZentuJobOutline.h"

#include <algorithm>

#include "ZentuJobDocument.h"

namespace {

// From the start of a range to the end of a later line.
ZentuTextRange through_line(const ZentuJobDocument& document, const ZentuTextRange& start,
                            std::size_t last) {
    const std::size_t end = document.ColumnOf(last, document.LineText(last).size());
    return {start.line, start.column, last,
            std::max(end, last == start.line ? start.end_column : 1)};
}

// The last line of a command: its END_, else its last item's, else its keyword's.
std::size_t last_line_of(const ZentuDocumentCommand& command) {
    if (command.end_line != 0) {
        return command.end_line;
    }
    return command.items.empty() ? command.line : command.items.back().last_line;
}

}  // namespace

std::vector<ZentuOutlineEntry> zentu_outline(const ZentuJobDocument& document) {
    std::vector<ZentuOutlineEntry> outline;
    for (const ZentuDocumentCommand& command : document.Commands()) {
        const std::string& identifier = command.IdName();
        ZentuOutlineEntry entry{
            identifier.empty() ? command.keyword : identifier,
            command.keyword,
            through_line(document, command.keyword_range, last_line_of(command)),
            command.keyword_range,
            {}};
        for (const ZentuDocumentItem& item : command.items) {
            entry.children.push_back({item.name,
                                      item.value,
                                      through_line(document, item.name_range, item.last_line),
                                      item.name_range,
                                      {}});
        }
        outline.push_back(std::move(entry));
    }
    return outline;
}
