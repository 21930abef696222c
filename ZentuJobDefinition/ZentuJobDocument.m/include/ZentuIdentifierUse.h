#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "ZentuCmdDefs.h"
#include "ZentuFinding.h"
#include "ZentuJobDocumentExport.h"

class ZentuJobDocument;
class ZentuJobSchema;

// One place where a job file writes a command's identifier: where a command gives it, where an
// item (or an element of a list) refers to it, or a %NAME% term of an expression. Navigation,
// renaming and completion all read these places.
struct ZentuIdentifierUse {
    enum class Role { DEFINITION, REFERENCE, EXPRESSION_TERM };

    Role role = Role::DEFINITION;
    // The identifier in upper case, in which commands find each other.
    std::string identifier;
    // The identifier as written, without the marks around an expression term.
    ZentuTextRange range;
    // The document command and item that write it.
    std::size_t command = 0;
    std::size_t item = 0;
    // A definition's command kind; the kind that a reference names; CMD_PLACEHOLDER for an
    // expression term, which names a response of either kind.
    ZentuCmdDefs::Cmd kind = ZentuCmdDefs::Cmd::CMD_PLACEHOLDER;
};

// Every place of the document that writes an identifier, in file order; the schema tells which
// items give identifiers, refer or hold expressions.
ZENTU_JOB_DOCUMENT_API std::vector<ZentuIdentifierUse> zentu_identifier_uses(
    const ZentuJobDocument& document, const ZentuJobSchema& schema);
