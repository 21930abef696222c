#include "ZentuJobEdits.h"

#include <algorithm>
#include <cctype>
#include <iterator>

#include "KPL_Failure.h"
#include "ZentuCmd.h"
#include "ZentuCmdIdentifier.h"
#include "ZentuJobDocument.h"
#include "ZentuJobDocumentMessages.h"
#include "ZentuStringUtil.h"
#include "ZentuTypedJob.h"

namespace {

// The indentation of items that a command without items gets.
constexpr const char* ITEM_INDENT = "  ";
// The extra indentation of value lines under a name alone.
constexpr const char* VALUE_INDENT = "  ";
// The name of the item that holds a command's identifier.
constexpr const char* ID_NAME = "ID_NAME";

// Whether a name as written is the name asked for; names are compared in any case.
bool same_name(const std::string& written, const std::string& name) {
    return ZentuStringUtil::equals_ignoring_case(written, ZentuStringUtil::to_upper(name));
}

// The blanks that begin line n of the document.
std::string indent_of(const ZentuJobDocument& document, std::size_t number) {
    const std::string_view text = document.LineText(number);
    return std::string(text.substr(0, text.find_first_not_of(" \t")));
}

// The byte where line n begins.
std::size_t line_begin(const ZentuJobDocument& document, std::size_t number) {
    return static_cast<std::size_t>(document.LineText(number).data() - document.Text().data());
}

// The byte after the line feed of line n, or the end of a text whose last line has none.
std::size_t after_line(const ZentuJobDocument& document, std::size_t number) {
    return std::min(line_begin(document, number) + document.LineText(number).size() + 1,
                    document.Text().size());
}

// Whether line n holds nothing but blanks.
bool is_empty_line(const ZentuJobDocument& document, std::size_t number) {
    return document.LineText(number).find_first_not_of(" \t\r") == std::string_view::npos;
}

// The lines of an item NAME = value, or of a name alone with its value lines under it.
std::string item_lines(const std::string& indent, const std::string& name, const std::string& value,
                       bool nameAlone) {
    if (!nameAlone && value.find('\n') == std::string::npos) {
        return indent + name + " = " + value + "\n";
    }
    std::string lines = indent + name + "\n";
    std::vector<std::string> valueLines;
    ZentuStringUtil::Split(value, "\n", valueLines);
    for (const std::string& line : valueLines) {
        lines.append(indent).append(VALUE_INDENT).append(line).append("\n");
    }
    return lines;
}

// Refuses a name that would not read back as the name of an item: the reader would take it for
// a comment, split it at '=', or cut it at a blank.
void require_item_name(const std::string& name) {
    const bool oneWord =
        !name.empty() && name.front() != '#' && std::none_of(name.begin(), name.end(), [](char c) {
            return c == '=' || std::isspace(static_cast<unsigned char>(c)) ||
                   std::iscntrl(static_cast<unsigned char>(c));
        });
    if (!oneWord) {
        throw KPL_Failure(KPL_Failure::Format(ZentuJobDocumentMessages::NOT_AN_ITEM_NAME,
                                              ZentuStringUtil::excerpt(name).c_str()),
                          ZentuJobDocumentMessages::EDITS_TAG);
    }
}

// The first item of the command of that name, or null.
const ZentuDocumentItem* find_item(const ZentuDocumentCommand& command, const std::string& name) {
    const auto found =
        std::find_if(command.items.begin(), command.items.end(),
                     [&name](const ZentuDocumentItem& item) { return same_name(item.name, name); });
    return found == command.items.end() ? nullptr : &*found;
}

// The number of line feeds in [begin, end) of the text.
std::size_t line_feeds(const std::string& text, std::size_t begin, std::size_t end) {
    return static_cast<std::size_t>(std::count(text.begin() + static_cast<std::ptrdiff_t>(begin),
                                               text.begin() + static_cast<std::ptrdiff_t>(end),
                                               '\n'));
}

// An error that leaves lines of the file unknown for what they are, wherever it is.
bool is_structure_error(const ZentuFinding& finding) {
    return finding.severity == ZentuSeverity::ERROR &&
           (finding.code == ZentuFindingCodes::IO || finding.code == ZentuFindingCodes::SYNTAX);
}

// An error about what the edit wrote. A missing item is none: a command that a script builds
// lacks its required items until they are set, one edit after the other.
bool is_refused_text(const ZentuFinding& finding) {
    return finding.severity == ZentuSeverity::ERROR &&
           finding.code != ZentuFindingCodes::MISSING_ITEM;
}

}  // namespace

std::string ZentuJobEdits::apply(const std::string& text, const ZentuTextSplice& edit) {
    return text.substr(0, edit.begin) + edit.text + text.substr(edit.end);
}

ZentuTextSplice ZentuJobEdits::set_item(const ZentuJobDocument& document, std::size_t command,
                                        const std::string& name, const std::string& value) {
    require_item_name(name);
    const ZentuDocumentCommand& written = document.Commands()[command];
    if (const ZentuDocumentItem* item = find_item(written, name)) {
        return {line_begin(document, item->line), after_line(document, item->last_line),
                item_lines(indent_of(document, item->line), item->name, value, item->name_alone)};
    }
    const std::string indent =
        written.items.empty() ? ITEM_INDENT : indent_of(document, written.items.back().line);
    const std::size_t at = line_begin(document, written.end_line);
    return {at, at, item_lines(indent, name, value, false)};
}

std::optional<ZentuTextSplice> ZentuJobEdits::remove_item(const ZentuJobDocument& document,
                                                          std::size_t command,
                                                          const std::string& name) {
    const ZentuDocumentItem* item = find_item(document.Commands()[command], name);
    if (item == nullptr) {
        return std::nullopt;
    }
    return ZentuTextSplice{
        line_begin(document, item->line), after_line(document, item->last_line), {}};
}

ZentuTextSplice ZentuJobEdits::add_command(const ZentuJobDocument& document,
                                           const std::string& keyword,
                                           const std::string& identifier) {
    const std::string& text = document.Text();
    std::string added = text.empty() ? "" : text.back() == '\n' ? "\n" : "\n\n";
    added += keyword + "\n";
    if (!identifier.empty()) {
        added += std::string(ITEM_INDENT) + ID_NAME + " = " + identifier + "\n";
    }
    added += "END_\n";
    return {text.size(), text.size(), added};
}

ZentuTextSplice ZentuJobEdits::remove_command(const ZentuJobDocument& document,
                                              std::size_t command) {
    const ZentuDocumentCommand& written = document.Commands()[command];
    const std::size_t first = written.line;
    const std::size_t last = written.end_line == 0 ? document.LineCount() : written.end_line;
    const bool textAfter = after_line(document, last) < document.Text().size();
    if (textAfter && is_empty_line(document, last + 1)) {
        return {line_begin(document, first), after_line(document, last + 1), {}};
    }
    // At the end of the file the empty line that separated the command goes with it.
    const bool emptyBefore = first > 1 && is_empty_line(document, first - 1);
    return {line_begin(document, emptyBefore ? first - 1 : first), after_line(document, last), {}};
}

std::optional<std::size_t> ZentuJobEdits::written_command(const ZentuTypedJob& job,
                                                          const ZentuCmd& command) {
    const ZentuOrigin origin = job.OriginOf(command);
    if (origin.command == ZentuOrigin::NONE || origin.item != ZentuOrigin::NONE) {
        return std::nullopt;
    }
    const ZentuDocumentCommand& written = job.Document().Commands()[origin.command];
    const bool writesIt = same_name(written.keyword, command.GetName()) &&
                          same_name(written.IdName(), ZentuCmdIdentifier::text_of(command));
    return writesIt ? std::optional<std::size_t>(origin.command) : std::nullopt;
}

const ZentuCmd* ZentuJobEdits::command_written_at(const ZentuTypedJob& job, std::size_t index) {
    for (const ZentuCmd& command : job.Container()) {
        if (written_command(job, command) == index) {
            return &command;
        }
    }
    return nullptr;
}

std::vector<ZentuFinding> ZentuJobEdits::refusals(const ZentuTypedJob& edited,
                                                  const ZentuTextSplice& edit) {
    const std::string& text = edited.Document().Text();
    const std::size_t first = line_feeds(text, 0, edit.begin) + 1;
    const std::size_t written = line_feeds(edit.text, 0, edit.text.size());
    std::vector<ZentuFinding> refused;
    std::copy_if(edited.Findings().begin(), edited.Findings().end(), std::back_inserter(refused),
                 [&](const ZentuFinding& finding) {
                     const bool onEdit =
                         finding.range.line >= first && finding.range.line < first + written;
                     return is_structure_error(finding) || (onEdit && is_refused_text(finding));
                 });
    return refused;
}
