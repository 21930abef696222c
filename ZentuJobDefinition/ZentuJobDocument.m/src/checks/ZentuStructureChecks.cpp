#include <algorithm>
#include <array>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <unordered_set>
#include <utility>
#include <vector>

#include "BreltList.h"
#include "KPL_Failure.h"
#include "ZentuCmd.h"
#include "ZentuCmdIdentifier.h"
#include "ZentuCmdItem.h"
#include "ZentuJobChecks.h"
#include "ZentuJobDocumentMessages.h"
#include "ZentuJobSchema.h"
#include "ZentuJobView.h"
#include "ZentuReferenceGraph.h"
#include "ZentuStringUtil.h"
#include "ZentuTypedJob.h"
#include "checks/ZentuTextTable.h"
#include "schema/ZentuSchemaLookup.h"

namespace Messages = ZentuJobDocumentMessages;
using ZentuCmdDefs::Cmd;
using ZentuCmdItemDefs::DataType;

namespace {

// The item whose value identifies a command.
constexpr std::string_view ID_NAME = "ID_NAME";
// The items of a command that bound a value from below and above.
constexpr const char* LOWER_ITEM = "LOWER";
constexpr const char* UPPER_ITEM = "UPPER";
// The most numbers that a list of numbers holds; above it the list is no list of numbers.
constexpr std::int64_t LIST_BOUND = 10'000'000;
// Lists up to this many numbers are spelled out in messages.
constexpr std::size_t LIST_SHOWN = 10;

// The most digits an int can be written with.
constexpr std::size_t INT_DIGITS = 10;

std::string upper(const std::string& text) {
    return ZentuStringUtil::to_upper(text);
}

std::string number_text(double value) {
    return ZentuStringUtil::String(value);
}

const ZentuDocumentItem* find_item(const ZentuDocumentCommand& command, std::string_view name) {
    for (const ZentuDocumentItem& item : command.items) {
        if (ZentuStringUtil::equals_ignoring_case(item.name, name)) {
            return &item;
        }
    }
    return nullptr;
}

// "KEYWORD 'ID'" or "KEYWORD" for a command without identifier.
std::string command_label(const ZentuDocumentCommand& command) {
    return command.IdName().empty() ? command.keyword
                                    : command.keyword + " '" + command.IdName() + "'";
}

void check_identifiers(const ZentuJobDocument& document, std::vector<ZentuFinding>& findings) {
    // The identifiers upper-cased, in room taken at once so that the table's views of them stay.
    std::vector<std::string> identifiers;
    identifiers.reserve(document.Commands().size());
    ZentuTextTable<const ZentuDocumentCommand*> first(document.Commands().size());
    for (const ZentuDocumentCommand& command : document.Commands()) {
        const ZentuDocumentItem* id = find_item(command, ID_NAME);
        if (id == nullptr || id->value.empty()) {
            continue;
        }
        identifiers.push_back(upper(id->value));
        const auto [found, added] = first.Insert(identifiers.back(), &command);
        if (!added) {
            findings.push_back(
                zentu_finding(ZentuFindingCodes::DUPLICATE_IDENTIFIER,
                              KPL_Failure::Format(Messages::DUPLICATE_IDENTIFIER, id->value.c_str(),
                                                  (*found)->keyword.c_str(), (*found)->line),
                              id->value_range));
        }
    }
}

// A number item's value as a double, when it has one.
std::optional<double> number_of(const ZentuCmdItem* item) {
    if (item == nullptr) {
        return std::nullopt;
    }
    if (item->HasReal()) {
        return item->GetReal();
    }
    if (item->HasInteger()) {
        return static_cast<double>(item->GetInteger());
    }
    return std::nullopt;
}

// One entry of a list of numbers as written: a number, or a range with an optional step.
struct ListEntry {
    std::int64_t start = 0;
    std::int64_t end = 0;
    std::int64_t step = 1;
    bool range = false;
    std::size_t begin = 0;
    std::size_t finish = 0;
};

// How many numbers a list entry adds: a backward range or one with a step below one adds only
// its start.
std::int64_t count_of(const ListEntry& entry) {
    const bool forward = entry.start <= entry.end && entry.step > 0;
    return forward ? (entry.end - entry.start) / entry.step + 1 : 1;
}

// Whether an entry is a range that runs backwards.
bool runs_backwards(const ListEntry& entry) {
    return entry.range && entry.start > entry.end && entry.step > 0;
}

// The numbers of a list text counted, and its backward ranges; stops at the first text that is
// not a list (the reader refuses such a text, which is reported on its own). Only the backward
// ranges are kept, since a list of many entries rarely holds one.
class ListText {
  public:
    explicit ListText(const std::string& text) : text_(text) {
        while (Skip() && position_ < text_.size()) {
            if (!Entry()) {
                break;
            }
            if (Skip() && position_ < text_.size() && text_[position_] == ',') {
                ++position_;
            }
        }
    }

    // The numbers that the entries read give together.
    std::int64_t count = 0;
    // The ranges that run backwards, in the order written.
    std::vector<ListEntry> backwards;
    // The first number outside the integer range, as written.
    std::string outOfRange;

  private:
    bool Skip() {
        while (position_ < text_.size() &&
               std::isspace(static_cast<unsigned char>(text_[position_])) != 0) {
            ++position_;
        }
        return true;
    }

    // Reads a number in place; beyond ten digits it cannot be an int, so the digits after the
    // tenth are only passed over.
    bool Number(std::int64_t& value) {
        Skip();
        const std::size_t begin = position_;
        const bool negative = position_ < text_.size() && text_[position_] == '-';
        if (position_ < text_.size() && (text_[position_] == '-' || text_[position_] == '+')) {
            ++position_;
        }
        const std::size_t digits = position_;
        std::int64_t magnitude = 0;
        for (;
             position_ < text_.size() && std::isdigit(static_cast<unsigned char>(text_[position_]));
             ++position_) {
            if (position_ - digits < INT_DIGITS) {
                magnitude = magnitude * 10 + (text_[position_] - '0');
            }
        }
        if (position_ == digits) {
            return false;
        }
        const std::int64_t number = negative ? -magnitude : magnitude;
        const bool fits = position_ - digits <= INT_DIGITS &&
                          number >= std::numeric_limits<int>::min() &&
                          number <= std::numeric_limits<int>::max();
        if (!fits && outOfRange.empty()) {
            outOfRange = text_.substr(begin, position_ - begin);
        }
        value = fits ? number : 0;
        return true;
    }

    bool Entry() {
        ListEntry entry;
        entry.begin = position_;
        if (!Number(entry.start)) {
            return false;
        }
        entry.end = entry.start;
        if (position_ < text_.size() && text_[position_] == '-') {
            ++position_;
            entry.range = Number(entry.end);
            if (entry.range && position_ < text_.size() && text_[position_] == ':') {
                ++position_;
                entry.range = Number(entry.step);
            }
            if (!entry.range) {
                return false;
            }
        }
        entry.finish = position_;
        count += count_of(entry);
        if (runs_backwards(entry)) {
            backwards.push_back(entry);
        }
        return true;
    }

    const std::string& text_;
    std::size_t position_ = 0;
};

// What the item reads as, for messages: its numbers spelled out when they are few.
std::string reading_of(const ZentuCmdItem* item, std::int64_t count) {
    if (item == nullptr || !item->HasBreltList()) {
        return "no list of numbers at all";
    }
    if (count > static_cast<std::int64_t>(LIST_SHOWN)) {
        return std::to_string(count) + " numbers";
    }
    const BreltList<int> list = item->GetBreltList();
    if (list.elements.empty()) {
        return "an empty list";
    }
    std::string text;
    for (int value : list.elements) {
        text += (text.empty() ? "[" : ", ") + std::to_string(value);
    }
    return text + "]";
}

// An item of a document command as read, looked up only when a check needs it: most checks read
// the text alone.
struct ItemAsRead {
    const ZentuJobView& view;
    std::size_t command;
    std::size_t item;

    // The item read, or null.
    const ZentuCmdItem* Get() const { return view.Item(command, item); }
};

void check_integer_list(const ZentuJobDocument& document, const ZentuDocumentItem& written,
                        const ItemAsRead& item, std::vector<ZentuFinding>& findings) {
    const ListText list(written.value);
    const std::int64_t count = list.count;
    const auto report = [&](std::string message, std::size_t begin, std::size_t end) {
        findings.push_back(zentu_finding(ZentuFindingCodes::INTEGER_LIST, std::move(message),
                                         document.ValueRange(written, begin, end)));
    };
    if (!list.outOfRange.empty()) {
        const std::size_t at = written.value.find(list.outOfRange);
        report(KPL_Failure::Format(Messages::LIST_NUMBER_OUT_OF_RANGE, list.outOfRange.c_str(),
                                   reading_of(item.Get(), count).c_str()),
               at, at + list.outOfRange.size());
        return;
    }
    if (count > LIST_BOUND) {
        report(KPL_Failure::Format(Messages::LIST_OVER_BOUND, std::to_string(count).c_str(),
                                   std::to_string(LIST_BOUND).c_str(),
                                   reading_of(item.Get(), count).c_str()),
               0, written.value.size());
        return;
    }
    for (const ListEntry& entry : list.backwards) {
        const std::string range = written.value.substr(entry.begin, entry.finish - entry.begin);
        const std::string forward = std::to_string(entry.end) + "-" + std::to_string(entry.start);
        report(KPL_Failure::Format(Messages::LIST_RANGE_BACKWARDS, range.c_str(),
                                   reading_of(item.Get(), count).c_str(), forward.c_str()),
               entry.begin, entry.finish);
    }
}

// The identifiers of the commands of each kind, gathered once per kind when first asked for, so
// that a job of many lists of references stays linear.
class IdentifiersByKind {
  public:
    explicit IdentifiersByKind(const ZentuCmdContainer& container) : container_(container) {}

    const std::unordered_set<std::string>& Of(Cmd kind) {
        std::optional<std::unordered_set<std::string>>& identifiers =
            byKind_[static_cast<std::size_t>(kind)];
        if (!identifiers) {
            identifiers.emplace();
            for (const auto& command : container_.GetCommands(kind)) {
                if (const ZentuCmdItem* identifier = ZentuCmdIdentifier::item_of(*command)) {
                    identifiers->insert(identifier->GetString());
                }
            }
        }
        return *identifiers;
    }

  private:
    const ZentuCmdContainer& container_;
    std::array<std::optional<std::unordered_set<std::string>>, ZentuCmdDefs::CMD_KIND_COUNT>
        byKind_;
};

void check_list_references(const ZentuTypedJob& job, const ZentuDocumentItem& written,
                           const ZentuItemSchema& description, IdentifiersByKind& identifiers,
                           std::vector<ZentuFinding>& findings) {
    const std::unordered_set<std::string>& targets = identifiers.Of(description.references);
    const std::string& kind =
        ZentuCmdDefs::CMD_NAMES[static_cast<std::size_t>(description.references)];
    std::size_t begin = 0;
    while (begin <= written.value.size()) {
        const std::size_t comma = std::min(written.value.find(',', begin), written.value.size());
        std::size_t first = begin;
        std::size_t last = comma;
        while (first < last &&
               std::isspace(static_cast<unsigned char>(written.value[first])) != 0) {
            ++first;
        }
        while (last > first &&
               std::isspace(static_cast<unsigned char>(written.value[last - 1])) != 0) {
            --last;
        }
        const std::string element = written.value.substr(first, last - first);
        if (!element.empty() && targets.count(upper(element)) == 0) {
            findings.push_back(zentu_finding(
                ZentuFindingCodes::DANGLING_REFERENCE,
                KPL_Failure::Format(Messages::LIST_ELEMENT_NAMES_NO_COMMAND, written.name.c_str(),
                                    element.c_str(), kind.c_str()),
                job.Document().ValueRange(written, first, last)));
        }
        begin = comma + 1;
    }
}

void check_bounds(const ZentuDocumentItem& written, const ZentuItemSchema& description,
                  const ItemAsRead& item, std::vector<ZentuFinding>& findings) {
    // Most items have no bounds: their values are not read, which would reach every item.
    if (!description.min && !description.max) {
        return;
    }
    const std::optional<double> value = number_of(item.Get());
    if (!value) {
        return;
    }
    if (description.min && *value < *description.min) {
        findings.push_back(zentu_finding(
            ZentuFindingCodes::OUT_OF_RANGE,
            KPL_Failure::Format(Messages::BELOW_MIN, written.name.c_str(), written.value.c_str(),
                                number_text(*description.min).c_str()),
            written.value_range));
    }
    if (description.max && *value > *description.max) {
        findings.push_back(zentu_finding(
            ZentuFindingCodes::OUT_OF_RANGE,
            KPL_Failure::Format(Messages::ABOVE_MAX, written.name.c_str(), written.value.c_str(),
                                number_text(*description.max).c_str()),
            written.value_range));
    }
}

void check_lower_above_upper(const ZentuDocumentCommand& command, const ZentuJobView& view,
                             std::size_t c, std::vector<ZentuFinding>& findings) {
    const ZentuDocumentItem* lower = find_item(command, LOWER_ITEM);
    const ZentuDocumentItem* upperItem = find_item(command, UPPER_ITEM);
    if (lower == nullptr || upperItem == nullptr) {
        return;
    }
    const auto index = [&](const ZentuDocumentItem* item) {
        return static_cast<std::size_t>(item - command.items.data());
    };
    const std::optional<double> low = number_of(view.Item(c, index(lower)));
    const std::optional<double> high = number_of(view.Item(c, index(upperItem)));
    if (low && high && *low > *high) {
        findings.push_back(
            zentu_finding(ZentuFindingCodes::OUT_OF_RANGE,
                          KPL_Failure::Format(Messages::LOWER_ABOVE_UPPER, lower->name.c_str(),
                                              lower->value.c_str(), upperItem->name.c_str(),
                                              upperItem->value.c_str(), upperItem->line),
                          lower->value_range));
    }
}

// Whether the completed command holds an item of the description, from the file or added.
bool holds(const ZentuCmd* command, const ZentuItemSchema& description) {
    if (command == nullptr) {
        return false;
    }
    const auto items = command->GetItemRange(description.kind);
    return std::any_of(items.begin(), items.end(),
                       [&](const auto& item) { return item->GetName() == description.name; });
}

// The checks of the items of a job's commands, command after command, reusing the room of the
// items met from one command to the next.
class CommandItemsCheck {
  public:
    CommandItemsCheck(const ZentuTypedJob& job, std::vector<ZentuFinding>& findings)
        : job_(job), view_(job), identifiers_(job.Container()), findings_(findings) {}

    // Checks the items of document command c, which the schema describes.
    void Check(const ZentuCommandSchema& schema, std::size_t c) {
        const ZentuDocumentCommand& command = job_.Document().Commands()[c];
        seen_.clear();
        for (std::size_t i = 0; i < command.items.size(); ++i) {
            const ZentuDocumentItem& written = command.items[i];
            if (const ZentuItemSchema* description =
                    ZentuSchemaLookup::find_item(schema, written.name)) {
                CheckItem(written, *description, ItemAsRead{view_, c, i});
            }
        }
        for (const ZentuItemSchema& description : schema.items) {
            if (description.required && FirstLineOf(description.name) == nullptr &&
                !holds(view_.Command(c), description)) {
                findings_.push_back(zentu_finding(
                    ZentuFindingCodes::MISSING_ITEM,
                    KPL_Failure::Format(Messages::MISSING_ITEM, command_label(command).c_str(), "",
                                        description.name.c_str()),
                    command.keyword_range));
            }
        }
        check_lower_above_upper(command, view_, c, findings_);
    }

  private:
    // Checks an item as written and as read.
    void CheckItem(const ZentuDocumentItem& written, const ZentuItemSchema& description,
                   const ItemAsRead& item) {
        if (const std::size_t* firstLine = FirstLineOf(description.name)) {
            if (!description.multiple) {
                findings_.push_back(zentu_finding(
                    ZentuFindingCodes::DUPLICATE_ITEM,
                    KPL_Failure::Format(Messages::DUPLICATE_ITEM, written.name.c_str(), *firstLine),
                    written.name_range));
            }
        } else {
            seen_.emplace_back(&description.name, written.line);
        }
        check_bounds(written, description, item, findings_);
        if (description.type == DataType::BRELT_LIST) {
            check_integer_list(job_.Document(), written, item, findings_);
        }
        if (description.type == DataType::LIST && description.references != Cmd::CMD_PLACEHOLDER) {
            check_list_references(job_, written, description, identifiers_, findings_);
        }
    }

    // The line of the first item of the name met in the command so far, or null.
    const std::size_t* FirstLineOf(const std::string& name) const {
        const auto found = std::find_if(seen_.begin(), seen_.end(),
                                        [&](const auto& entry) { return *entry.first == name; });
        return found == seen_.end() ? nullptr : &found->second;
    }

    const ZentuTypedJob& job_;
    const ZentuJobView view_;
    // The targets of lists of references.
    IdentifiersByKind identifiers_;
    std::vector<ZentuFinding>& findings_;
    // The described items met so far in the command with the line of the first of each name; a
    // command holds few items, so a search beats a hash table built per command.
    std::vector<std::pair<const std::string*, std::size_t>> seen_;
};

// Whether the node is a response, operator or design variable of the file that nothing refers to.
bool unused(const ZentuReferenceGraph::Node& node) {
    const bool counted =
        node.kind == Cmd::DRESP || node.kind == Cmd::OPERATOR || node.kind == Cmd::DV;
    return counted && node.fromFile && !node.used && !node.identifier.empty();
}

}  // namespace

void ZentuJobChecks::check_structure(const ZentuTypedJob& job, const ZentuJobSchema& schema,
                                     std::vector<ZentuFinding>& findings) {
    check_identifiers(job.Document(), findings);
    CommandItemsCheck items(job, findings);
    const auto& commands = job.Document().Commands();
    for (std::size_t c = 0; c < commands.size(); ++c) {
        if (const ZentuCommandSchema* described =
                ZentuSchemaLookup::find_command(schema, commands[c].keyword)) {
            items.Check(*described, c);
        }
    }
}

void ZentuJobChecks::check_graph(const ZentuTypedJob& job, const ZentuJobSchema& schema,
                                 std::vector<ZentuFinding>& findings) {
    const ZentuReferenceGraph graph(job, schema);
    const auto& commands = job.Document().Commands();
    const auto keyword_range = [&](const ZentuReferenceGraph::Node& node) {
        return commands[job.OriginOf(*node.command).command].keyword_range;
    };
    // A big job may draw a finding for every third command: room for them at once spares moving
    // the findings again and again into new memory.
    findings.reserve(findings.size() + static_cast<std::size_t>(std::count_if(
                                           graph.Nodes().begin(), graph.Nodes().end(), unused)));
    for (const ZentuReferenceGraph::Node& node : graph.Nodes()) {
        if (unused(node)) {
            findings.push_back(
                zentu_finding(ZentuFindingCodes::UNUSED_COMMAND,
                              KPL_Failure::Format(Messages::UNUSED_COMMAND, node.keyword.c_str(),
                                                  node.identifier.c_str()),
                              keyword_range(node)));
        }
    }
    for (const std::vector<std::size_t>& cycle : graph.OperatorCycles()) {
        std::string path;
        for (const std::size_t n : cycle) {
            path += (path.empty() ? "" : " -> ") + graph.Nodes()[n].identifier;
        }
        const ZentuReferenceGraph::Node& first = graph.Nodes()[cycle.front()];
        if (job.OriginOf(*first.command).command != ZentuOrigin::NONE) {
            findings.push_back(
                zentu_finding(ZentuFindingCodes::REFERENCE_CYCLE,
                              KPL_Failure::Format(Messages::REFERENCE_CYCLE,
                                                  first.identifier.c_str(), path.c_str()),
                              keyword_range(first)));
        }
    }
}
