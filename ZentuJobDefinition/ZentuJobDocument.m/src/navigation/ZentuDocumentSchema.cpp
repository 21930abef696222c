#include "navigation/ZentuDocumentSchema.h"

#include "ZentuStringUtil.h"

using ZentuCmdDefs::Cmd;
using ZentuCmdItemDefs::CmdItem;
using ZentuCmdItemDefs::DataType;

namespace ZentuDocumentSchema {

const ZentuCommandSchema* command_of(const ZentuJobSchema& schema,
                                     const ZentuDocumentCommand& command) {
    return schema.FindCommand(ZentuStringUtil::to_upper(command.keyword));
}

const ZentuItemSchema* item_of(const ZentuCommandSchema* command, const ZentuDocumentItem& item) {
    return command == nullptr ? nullptr : command->FindItem(ZentuStringUtil::to_upper(item.name));
}

Cmd referenced_kind(const ZentuItemSchema* item) {
    const bool refers =
        item != nullptr && (item->type == DataType::REFERENCE || item->type == DataType::LIST);
    return refers ? item->references : Cmd::CMD_PLACEHOLDER;
}

bool is_expression(const ZentuCommandSchema* command, const ZentuItemSchema* item) {
    return command != nullptr && item != nullptr && command->kind == Cmd::OPERATOR &&
           item->kind == CmdItem::ADD_FILE;
}

bool is_identifier(const ZentuItemSchema* item) {
    return item != nullptr && item->kind == CmdItem::ID_NAME;
}

std::vector<ValueSpan> value_spans(const ZentuJobDocument& document, std::size_t command,
                                   std::size_t item) {
    const ZentuDocumentItem& written = document.Commands()[command].items[item];
    std::vector<ValueSpan> spans;
    for (std::size_t number = written.line; number <= written.last_line; ++number) {
        const ZentuDocumentLine& line = document.Lines()[number - 1];
        if (line.command != command || line.item != item) {
            continue;
        }
        if (line.scanned.kind == ZentuParLine::Kind::ITEM) {
            spans.push_back({number, line.scanned.valueBegin, line.scanned.valueEnd});
        } else if (line.scanned.kind == ZentuParLine::Kind::VALUE) {
            spans.push_back({number, line.scanned.nameBegin, line.scanned.nameEnd});
        }
    }
    return spans;
}

}  // namespace ZentuDocumentSchema
