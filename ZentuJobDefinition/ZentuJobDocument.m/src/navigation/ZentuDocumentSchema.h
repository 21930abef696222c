#pragma once

#include <cstddef>
#include <vector>

#include "ZentuJobDocument.h"
#include "ZentuJobSchema.h"

// What the schema says about the commands and items of a document as written, and where their
// values stand: the common ground of the editor features.
namespace ZentuDocumentSchema {

// The description of a command as written (keywords match in upper case), or null.
const ZentuCommandSchema* command_of(const ZentuJobSchema& schema,
                                     const ZentuDocumentCommand& command);

// The description of an item of a described command (names match in upper case), or null.
const ZentuItemSchema* item_of(const ZentuCommandSchema* command, const ZentuDocumentItem& item);

// The command kind whose identifiers an item names: a reference, or a list of references;
// CMD_PLACEHOLDER for any other item.
ZentuCmdDefs::Cmd referenced_kind(const ZentuItemSchema* item);

// Whether an item holds an expression over responses (the expression of an operator).
bool is_expression(const ZentuCommandSchema* command, const ZentuItemSchema* item);

// Whether an item gives its command's identifier.
bool is_identifier(const ZentuItemSchema* item);

// One line's part of an item's value: bytes [begin, end) of the line, blanks around them cut.
struct ValueSpan {
    std::size_t line = 0;
    std::size_t begin = 0;
    std::size_t end = 0;
};

// The parts of an item's value, one per line that holds it.
std::vector<ValueSpan> value_spans(const ZentuJobDocument& document, std::size_t command,
                                   std::size_t item);

}  // namespace ZentuDocumentSchema
