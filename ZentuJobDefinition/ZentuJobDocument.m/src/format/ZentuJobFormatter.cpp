#include "ZentuJobFormatter.h"

#include <algorithm>
#include <string_view>

#include "ZentuJobDocument.h"
#include "ZentuJobSchema.h"
#include "ZentuStringUtil.h"

using Kind = ZentuParLine::Kind;

namespace {

// What goes before every line inside a command.
constexpr std::string_view INDENT = "  ";
// The line that closes a command.
constexpr std::string_view END_LINE = "END_";
// What parts an item's name from its value.
constexpr char NAME_VALUE_SEPARATOR = '=';

// Lays a readable document out line by line. Lines are never merged, split or moved, and each
// keeps the text that gives it its kind, so the layout cannot change what the file reads to;
// only the empty lines that do not belong to a value are dropped or added.
class ZentuJobLayout {
  public:
    // A layout of the document with the names that the schema describes raised.
    ZentuJobLayout(const ZentuJobDocument& document, const ZentuJobSchema& schema)
        : document_(document), schema_(schema) {}

    // The whole text, laid out; the layout is used up by it.
    std::string Text() {
        text_.reserve(document_.Text().size());
        const std::vector<ZentuDocumentLine>& lines = document_.Lines();
        for (std::size_t number = 1; number <= lines.size(); ++number) {
            Take(lines[number - 1], document_.LineText(number));
        }
        return std::move(text_);
    }

  private:
    // Writes one line of the document in its new layout, by its kind.
    void Take(const ZentuDocumentLine& line, std::string_view text) {
        const ZentuParLine& scanned = line.scanned;
        const bool inside = line.command != ZentuDocumentLine::NONE;
        switch (scanned.kind) {
            case Kind::BLANK:
                (inside ? emptyInside_ : emptyOutside_) = true;
                break;
            case Kind::COMMENT:
                if (inside) {
                    StartInsideLine();
                    Indented(scanned.Name(text));
                } else {
                    StartOutsideLine();
                    Line(scanned.Name(text));
                }
                break;
            case Kind::KEYWORD:
                StartOutsideLine();
                command_ =
                    schema_.FindCommand(ZentuStringUtil::to_upper(std::string(scanned.Name(text))));
                Line(Described(scanned.Name(text), command_ != nullptr));
                afterKeyword_ = true;
                break;
            case Kind::ITEM:
                StartInsideLine();
                Item(scanned.Name(text), scanned.Value(text));
                break;
            case Kind::NAME:
                StartInsideLine();
                Indented(ItemName(scanned.Name(text)));
                break;
            case Kind::VALUE:
                ValueLine(scanned.Name(text));
                break;
            case Kind::END:
                Line(END_LINE);
                afterEnd_ = true;
                break;
            case Kind::END_OUTSIDE_COMMAND:
            case Kind::ITEM_OUTSIDE_COMMAND:
            case Kind::COMMAND_LINE_NOT_ONE_WORD:
            case Kind::COMMAND_WORD_NOT_PRINTABLE:
                // A document that can be formatted holds none of these.
                break;
        }
    }

    // Outside commands, one empty line separates a command from what follows it, and runs of
    // empty lines become one; none leads the file.
    void StartOutsideLine() {
        if (!text_.empty() && (afterEnd_ || emptyOutside_)) {
            Line({});
        }
        emptyOutside_ = false;
        afterEnd_ = false;
    }

    // Inside a command, runs of empty lines between items become one; none follows the keyword,
    // and none is written before END_, since only the next command's lines would write it.
    void StartInsideLine() {
        if (emptyInside_ && !afterKeyword_) {
            Line({});
        }
        emptyInside_ = false;
        afterKeyword_ = false;
    }

    // NAME = value, without blanks where there is no name or no value.
    void Item(std::string_view name, std::string_view value) {
        std::string line = ItemName(name);
        line += line.empty() ? "" : " ";
        line += NAME_VALUE_SEPARATOR;
        if (!value.empty()) {
            line += ' ';
            line += value;
        }
        Indented(line);
    }

    // An empty value line is part of the value, so it stays, without blanks.
    void ValueLine(std::string_view value) {
        if (value.empty()) {
            Line({});
        } else {
            Indented(value);
        }
    }

    // The name in upper case when the open command's description holds it.
    std::string ItemName(std::string_view name) const {
        const bool described =
            command_ != nullptr &&
            command_->FindItem(ZentuStringUtil::to_upper(std::string(name))) != nullptr;
        return Described(name, described);
    }

    // The name in upper case when the schema describes it, else as written.
    static std::string Described(std::string_view name, bool described) {
        return described ? ZentuStringUtil::to_upper(std::string(name)) : std::string(name);
    }

    // A line inside a command.
    void Indented(std::string_view line) {
        text_ += INDENT;
        Line(line);
    }

    // A line as it stands, ended by a line feed.
    void Line(std::string_view line) {
        text_ += line;
        text_ += '\n';
    }

    const ZentuJobDocument& document_;
    const ZentuJobSchema& schema_;
    std::string text_;
    // The description of the open command, or null.
    const ZentuCommandSchema* command_ = nullptr;
    // Empty lines were skipped since the last line written, outside or inside a command.
    bool emptyOutside_ = false;
    bool emptyInside_ = false;
    // The last line written is a keyword, or an END_.
    bool afterKeyword_ = false;
    bool afterEnd_ = false;
};

}  // namespace

namespace ZentuJobFormatter {

bool can_format(const ZentuJobDocument& document) {
    return std::none_of(document.Findings().begin(), document.Findings().end(),
                        [](const ZentuFinding& finding) {
                            return finding.code == ZentuFindingCodes::IO ||
                                   finding.code == ZentuFindingCodes::SYNTAX;
                        });
}

std::optional<std::string> format_document(const ZentuJobDocument& document,
                                           const ZentuJobSchema& schema) {
    if (!can_format(document)) {
        return std::nullopt;
    }
    return ZentuJobLayout(document, schema).Text();
}

}  // namespace ZentuJobFormatter
