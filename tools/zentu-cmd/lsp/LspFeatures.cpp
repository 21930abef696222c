#include "lsp/LspFeatures.h"

#include "ZentuJobCompletion.h"
#include "ZentuJobFormatter.h"
#include "ZentuJobHover.h"
#include "ZentuJobOutline.h"
#include "lsp/LspPositions.h"

using json = nlohmann::json;

namespace zentu_cmd::lsp {

namespace {

// The protocol's kinds of completion items and symbols that job files have.
constexpr int COMPLETION_FIELD = 5;
constexpr int COMPLETION_KEYWORD = 14;
constexpr int COMPLETION_REFERENCE = 18;
constexpr int COMPLETION_ENUM_MEMBER = 20;
constexpr int SYMBOL_FIELD = 8;
constexpr int SYMBOL_STRUCT = 23;
// The name of a symbol whose item has none; the protocol refuses empty names.
constexpr const char* NAMELESS = "(no name)";

ZentuTextPosition position_in(const LspDocument& document, const json& params) {
    return position_from(document.Document(), params.at("position"));
}

int completion_kind(ZentuCompletionCandidate::Kind kind) {
    switch (kind) {
        case ZentuCompletionCandidate::Kind::KEYWORD:
            return COMPLETION_KEYWORD;
        case ZentuCompletionCandidate::Kind::ITEM:
            return COMPLETION_FIELD;
        case ZentuCompletionCandidate::Kind::VALUE:
            return COMPLETION_ENUM_MEMBER;
        case ZentuCompletionCandidate::Kind::IDENTIFIER:
            break;
    }
    return COMPLETION_REFERENCE;
}

json markdown(const std::string& text) {
    return {{"kind", "markdown"}, {"value", text}};
}

json location(const LspDocument& document, const ZentuTextRange& range) {
    return {{"uri", document.uri}, {"range", range_of(document.Document(), range)}};
}

json text_edit(const LspDocument& document, const ZentuTextRange& range, const std::string& text) {
    return {{"range", range_of(document.Document(), range)}, {"newText", text}};
}

json symbol_of(const LspDocument& document, const ZentuOutlineEntry& entry, int kind) {
    json symbol = {{"name", entry.name.empty() ? NAMELESS : entry.name},
                   {"detail", entry.detail},
                   {"kind", kind},
                   {"range", range_of(document.Document(), entry.range)},
                   {"selectionRange", range_of(document.Document(), entry.selection)}};
    if (!entry.children.empty()) {
        symbol["children"] = json::array();
        for (const ZentuOutlineEntry& child : entry.children) {
            symbol["children"].push_back(symbol_of(document, child, SYMBOL_FIELD));
        }
    }
    return symbol;
}

// Whether two ranges share a line, so that a quick fix is offered anywhere on its finding's lines.
bool share_lines(const ZentuTextRange& a, const ZentuTextRange& b) {
    return a.line <= b.end_line && b.line <= a.end_line;
}

// The document range that a protocol range stands for.
ZentuTextRange range_from(const LspDocument& document, const json& range) {
    const ZentuTextPosition start = position_from(document.Document(), range.at("start"));
    const ZentuTextPosition end = position_from(document.Document(), range.at("end"));
    return {start.line, start.column, end.line, end.column};
}

}  // namespace

json completion(const LspDocument& document, const json& params) {
    json items = json::array();
    for (const ZentuCompletionCandidate& candidate :
         zentu_completions(*document.navigator, position_in(document, params))) {
        items.push_back({{"label", candidate.label},
                         {"kind", completion_kind(candidate.kind)},
                         {"detail", candidate.detail},
                         {"documentation", markdown(candidate.documentation)}});
    }
    return items;
}

json hover(const LspDocument& document, const json& params) {
    const auto found = zentu_hover(*document.navigator, position_in(document, params));
    if (!found) {
        return nullptr;
    }
    return {{"contents", markdown(found->text)},
            {"range", range_of(document.Document(), found->range)}};
}

json definition(const LspDocument& document, const json& params) {
    const ZentuIdentifierUse* use = document.navigator->UseAt(position_in(document, params));
    const ZentuIdentifierUse* named = use ? document.navigator->DefinitionOf(*use) : nullptr;
    if (named == nullptr) {
        return nullptr;
    }
    return location(document, document.Document().Commands()[named->command].keyword_range);
}

json references(const LspDocument& document, const json& params) {
    const ZentuIdentifierUse* use = document.navigator->UseAt(position_in(document, params));
    const bool declarations = params.value("/context/includeDeclaration"_json_pointer, true);
    json locations = json::array();
    if (use == nullptr) {
        return locations;
    }
    for (const ZentuIdentifierUse* named : document.navigator->UsesOf(use->identifier)) {
        if (declarations || named->role != ZentuIdentifierUse::Role::DEFINITION) {
            locations.push_back(location(document, named->range));
        }
    }
    return locations;
}

json prepare_rename(const LspDocument& document, const json& params) {
    const ZentuIdentifierUse* use = document.navigator->UseAt(position_in(document, params));
    if (use == nullptr) {
        return nullptr;
    }
    const ZentuDocumentItem& item = document.Document().Commands()[use->command].items[use->item];
    return {{"range", range_of(document.Document(), use->range)},
            {"placeholder",
             use->role == ZentuIdentifierUse::Role::DEFINITION ? item.value : use->identifier}};
}

json rename(const LspDocument& document, const json& params) {
    const std::string newName = params.at("newName").get<std::string>();
    const auto edits = document.navigator->Rename(position_in(document, params), newName);
    if (!edits) {
        throw RequestRefused{"'" + newName + "' cannot rename what is at this place"};
    }
    json changes = json::array();
    for (const ZentuTextEdit& edit : *edits) {
        changes.push_back(text_edit(document, edit.range, edit.text));
    }
    return {{"changes", {{document.uri, std::move(changes)}}}};
}

json document_symbols(const LspDocument& document, const json&) {
    json symbols = json::array();
    for (const ZentuOutlineEntry& entry : zentu_outline(document.Document())) {
        symbols.push_back(symbol_of(document, entry, SYMBOL_STRUCT));
    }
    return symbols;
}

json folding_ranges(const LspDocument& document, const json&) {
    json ranges = json::array();
    for (const ZentuOutlineEntry& entry : zentu_outline(document.Document())) {
        if (entry.range.end_line > entry.range.line) {
            ranges.push_back({{"startLine", entry.range.line - 1},
                              {"endLine", entry.range.end_line - 1},
                              {"kind", "region"}});
        }
    }
    return ranges;
}

json formatting(const LspDocument& document, const json&) {
    const std::string& text = document.Document().Text();
    const auto formatted =
        ZentuJobFormatter::format_document(document.Document(), *document.schema);
    if (!formatted) {
        throw RequestRefused{"the file's structure has errors; fix them to format it"};
    }
    json edits = json::array();
    if (*formatted != text) {
        edits.push_back({{"range", whole_text_range(text)}, {"newText", *formatted}});
    }
    return edits;
}

json code_actions(const LspDocument& document, const json& params) {
    const ZentuTextRange asked = range_from(document, params.at("range"));
    json actions = json::array();
    for (const ZentuFinding& finding : document.findings) {
        if (!finding.suggestion || !share_lines(finding.range, asked)) {
            continue;
        }
        const json edit = text_edit(document, finding.range, *finding.suggestion);
        actions.push_back({{"title", "Replace with '" + *finding.suggestion + "'"},
                           {"kind", "quickfix"},
                           {"edit", {{"changes", {{document.uri, json::array({edit})}}}}}});
    }
    return actions;
}

}  // namespace zentu_cmd::lsp
