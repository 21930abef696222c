#include "ZentuJobJson.h"

#include <cstddef>
#include <optional>
#include <typeinfo>

#include "BreltList.h"
#include "ZentuCmd.h"
#include "ZentuCmdAutoItem.h"
#include "ZentuCmdIdentifier.h"
#include "ZentuCmdItem.h"
#include "ZentuTypedJob.h"
#include "json/ZentuJsonSinks.h"

using json = ZentuJson;
using ZentuCmdItemDefs::CmdItem;

namespace {

// The values of an item's integer list. The library's automatically typed item holds its list as
// text, whose values are visited without holding them, so that a range of millions of numbers
// takes no memory; an item of any other class gives its list.
template <class Sink>
void emit_integer_list(const ZentuCmdItem& item, Sink& sink) {
    if (typeid(item) == typeid(ZentuCmdAutoItem)) {
        visit_brelt_list_values(item.GetString(), [&sink](int value) { sink.Value(value); });
        return;
    }
    for (int value : item.GetBreltList()) {
        sink.Value(value);
    }
}

// Every reading that the item answers to, under the name of its data type in lower case.
template <class Sink>
void emit_readings(const ZentuCmdItem& item, Sink& sink) {
    sink.BeginObject();
    if (item.HasInteger()) {
        sink.Key("integer");
        sink.Value(item.GetInteger());
    }
    if (item.HasReal()) {
        sink.Key("real");
        sink.Value(item.GetReal());
    }
    if (item.HasVector3d()) {
        const ZentuMatrix<3, 1, double> vector = item.GetVector3d();
        sink.Key("vector3d");
        sink.BeginArray();
        for (std::size_t row = 0; row < 3; ++row) {
            sink.Value(vector(row, 0));
        }
        sink.End();
    }
    if (item.HasEnum()) {
        sink.Key("enum");
        sink.Value(static_cast<int>(item.GetEnum()));
    }
    if (item.HasList()) {
        sink.Key("list");
        sink.BeginArray();
        for (const std::string& element : item.GetList()) {
            sink.Value(element);
        }
        sink.End();
    }
    if (item.HasBreltList()) {
        sink.Key("integer_list");
        sink.BeginArray();
        emit_integer_list(item, sink);
        sink.End();
    }
    sink.End();
}

// The line that an origin in the document points at: an item's name, else a command's keyword;
// none for no origin.
std::optional<std::size_t> line_of(const ZentuJobDocument& document, const ZentuOrigin& origin) {
    if (origin.command == ZentuOrigin::NONE) {
        return std::nullopt;
    }
    const ZentuDocumentCommand& command = document.Commands()[origin.command];
    return origin.item == ZentuOrigin::NONE ? command.line : command.items[origin.item].line;
}

// The member "line", left out when nothing in the file gave rise to what it describes.
template <class Sink>
void emit_line(const std::optional<std::size_t>& line, Sink& sink) {
    if (line) {
        sink.Key("line");
        sink.Value(*line);
    }
}

// A command's identifier, or null when it has none.
template <class Sink>
void emit_identifier(const ZentuCmd& command, Sink& sink) {
    const ZentuCmdItem* item = ZentuCmdIdentifier::item_of(command);
    if (item == nullptr) {
        sink.Value(json(nullptr));
        return;
    }
    sink.Value(item->GetString());
}

// An item's entry; without line when nothing in the file gave rise to it.
template <class Sink>
void emit_item(CmdItem kind, const ZentuCmdItem& item, const std::optional<std::size_t>& line,
               Sink& sink) {
    sink.BeginObject();
    sink.Key("name");
    sink.Value(item.GetName());
    sink.Key("kind");
    sink.Value(ZentuCmdItemDefs::CMD_ITEM_NAMES[static_cast<std::size_t>(kind)]);
    emit_line(line, sink);
    sink.Key("text");
    sink.Value(item.GetString());
    sink.Key("readings");
    emit_readings(item, sink);
    if (item.HasReference() && item.GetReference() != nullptr) {
        sink.Key("reference");
        emit_identifier(*item.GetReference(), sink);
    }
    sink.End();
}

// An item that the file does not hold takes its command's line, since the command's default or
// rule added it.
std::optional<std::size_t> item_line(const ZentuTypedJob& job, const ZentuOrigin& commandOrigin,
                                     const ZentuCmdItem& item,
                                     const std::optional<std::size_t>& commandLine) {
    const ZentuOrigin origin = job.ItemOriginOf(commandOrigin, item);
    return origin.item == ZentuOrigin::NONE ? commandLine : line_of(job.Document(), origin);
}

template <class Sink>
void emit_command(const ZentuTypedJob& job, const ZentuCmd& command, Sink& sink) {
    sink.BeginObject();
    sink.Key("kind");
    sink.Value(ZentuCmdDefs::CMD_NAMES[static_cast<std::size_t>(command.GetType())]);
    sink.Key("name");
    sink.Value(command.GetName());
    sink.Key("identifier");
    emit_identifier(command, sink);
    const ZentuOrigin origin = job.OriginOf(command);
    const std::optional<std::size_t> commandLine = line_of(job.Document(), origin);
    emit_line(commandLine, sink);
    sink.Key("items");
    sink.BeginArray();
    for (std::size_t kind = 0; kind < ZentuCmdItemDefs::CMD_ITEM_KIND_COUNT; ++kind) {
        const auto itemKind = static_cast<CmdItem>(kind);
        for (const auto& item : command.GetItemRange(itemKind)) {
            emit_item(itemKind, *item, item_line(job, origin, *item, commandLine), sink);
        }
    }
    sink.End();
    sink.End();
}

// A number of the finding's range, or null for a finding without place.
json place_number(const ZentuFinding& finding, std::size_t number) {
    return zentu_has_place(finding) ? json(number) : json(nullptr);
}

}  // namespace

void ZentuJobJson::write_job(const std::string& name, const ZentuTypedJob& job, std::ostream& out) {
    ZentuJsonSinks::Text sink(out);
    sink.BeginObject();
    sink.Key("path");
    sink.Value(name);
    sink.Key("commands");
    sink.BeginArray();
    for (const ZentuCmd& command : job.Container()) {
        emit_command(job, command, sink);
    }
    sink.End();
    sink.End();
    sink.Flush();
}

json ZentuJobJson::finding(const ZentuFinding& finding) {
    const ZentuTextRange& range = finding.range;
    return {{"severity", zentu_severity_name(finding.severity)},
            {"code", finding.code},
            {"message", finding.message},
            {"line", place_number(finding, range.line)},
            {"column", place_number(finding, range.column)},
            {"end_line", place_number(finding, range.end_line)},
            {"end_column", place_number(finding, range.end_column)},
            {"suggestion", finding.suggestion ? json(*finding.suggestion) : json(nullptr)}};
}

json ZentuJobJson::identifier(const ZentuCmd& command) {
    ZentuJsonSinks::Tree sink;
    emit_identifier(command, sink);
    return sink.Take();
}

json ZentuJobJson::line(const ZentuTypedJob& job, const ZentuCmd& command) {
    const std::optional<std::size_t> line = line_of(job.Document(), job.OriginOf(command));
    return line ? json(*line) : json(nullptr);
}

json ZentuJobJson::item(const ZentuTypedJob& job, const ZentuCmd& command, CmdItem kind,
                        const ZentuCmdItem& item) {
    ZentuJsonSinks::Tree sink;
    const ZentuOrigin origin = job.OriginOf(command);
    emit_item(kind, item, item_line(job, origin, item, line_of(job.Document(), origin)), sink);
    return sink.Take();
}

json ZentuJobJson::command(const ZentuTypedJob& job, const ZentuCmd& command) {
    ZentuJsonSinks::Tree sink;
    emit_command(job, command, sink);
    return sink.Take();
}

json ZentuJobJson::job(const std::string& name, const ZentuTypedJob& job) {
    json commands = json::array();
    for (const ZentuCmd& command : job.Container()) {
        commands.push_back(ZentuJobJson::command(job, command));
    }
    return {{"path", name}, {"commands", std::move(commands)}};
}
