#include "ZentuJobJson.h"

#include "ZentuCmd.h"
#include "ZentuCmdIdentifier.h"
#include "ZentuCmdItem.h"
#include "ZentuTypedJob.h"

using json = ZentuJson;
using ZentuCmdItemDefs::CmdItem;

namespace {

json vector_of(const ZentuCmdItem& item) {
    const ZentuMatrix<3, 1, double> vector = item.GetVector3d();
    return json::array({vector(0, 0), vector(1, 0), vector(2, 0)});
}

json integer_list_of(const ZentuCmdItem& item) {
    json values = json::array();
    for (int value : item.GetBreltList()) {
        values.push_back(value);
    }
    return values;
}

// Every reading that the item answers to, under the name of its data type in lower case.
json readings_of(const ZentuCmdItem& item) {
    json readings = json::object();
    if (item.HasInteger()) {
        readings["integer"] = item.GetInteger();
    }
    if (item.HasReal()) {
        readings["real"] = item.GetReal();
    }
    if (item.HasVector3d()) {
        readings["vector3d"] = vector_of(item);
    }
    if (item.HasEnum()) {
        readings["enum"] = static_cast<int>(item.GetEnum());
    }
    if (item.HasList()) {
        readings["list"] = item.GetList();
    }
    if (item.HasBreltList()) {
        readings["integer_list"] = integer_list_of(item);
    }
    return readings;
}

// The line that an origin in the document points at: an item's name, else a command's keyword;
// null for no origin.
json line_of(const ZentuJobDocument& document, const ZentuOrigin& origin) {
    if (origin.command == ZentuOrigin::NONE) {
        return nullptr;
    }
    const ZentuDocumentCommand& command = document.Commands()[origin.command];
    return origin.item == ZentuOrigin::NONE ? command.line : command.items[origin.item].line;
}

// An item's entry; without line when nothing in the file gave rise to it.
json item_entry(CmdItem kind, const ZentuCmdItem& item, json line) {
    json entry = {{"name", item.GetName()},
                  {"kind", ZentuCmdItemDefs::CMD_ITEM_NAMES[static_cast<std::size_t>(kind)]}};
    if (!line.is_null()) {
        entry["line"] = std::move(line);
    }
    entry["text"] = item.GetString();
    entry["readings"] = readings_of(item);
    if (item.HasReference() && item.GetReference() != nullptr) {
        entry["reference"] = ZentuJobJson::identifier(*item.GetReference());
    }
    return entry;
}

// An item that the file does not hold takes its command's line, since the command's default or
// rule added it.
json item_line(const ZentuTypedJob& job, const ZentuCmd& command, const ZentuCmdItem& item,
               const json& commandLine) {
    const ZentuOrigin origin = job.OriginOf(command, item);
    return origin.item == ZentuOrigin::NONE ? commandLine : line_of(job.Document(), origin);
}

// A number of the finding's range, or null for a finding without place.
json place_number(const ZentuFinding& finding, std::size_t number) {
    return zentu_has_place(finding) ? json(number) : json(nullptr);
}

}  // namespace

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
    const ZentuCmdItem* item = ZentuCmdIdentifier::item_of(command);
    return item != nullptr ? json(item->GetString()) : json(nullptr);
}

json ZentuJobJson::line(const ZentuTypedJob& job, const ZentuCmd& command) {
    return line_of(job.Document(), job.OriginOf(command));
}

json ZentuJobJson::item(const ZentuTypedJob& job, const ZentuCmd& command, CmdItem kind,
                        const ZentuCmdItem& item) {
    return item_entry(kind, item, item_line(job, command, item, line(job, command)));
}

json ZentuJobJson::command(const ZentuTypedJob& job, const ZentuCmd& command) {
    json entry = {{"kind", ZentuCmdDefs::CMD_NAMES[static_cast<std::size_t>(command.GetType())]},
                  {"name", command.GetName()},
                  {"identifier", identifier(command)}};
    const json commandLine = line(job, command);
    if (!commandLine.is_null()) {
        entry["line"] = commandLine;
    }
    json items = json::array();
    for (std::size_t kind = 0; kind < ZentuCmdItemDefs::CMD_ITEM_KIND_COUNT; ++kind) {
        const auto itemKind = static_cast<CmdItem>(kind);
        for (const auto& item : command.Items(itemKind)) {
            items.push_back(
                item_entry(itemKind, *item, item_line(job, command, *item, commandLine)));
        }
    }
    entry["items"] = std::move(items);
    return entry;
}

json ZentuJobJson::job(const std::string& name, const ZentuTypedJob& job) {
    json commands = json::array();
    for (const ZentuCmd& command : job.Container()) {
        commands.push_back(ZentuJobJson::command(job, command));
    }
    return {{"path", name}, {"commands", std::move(commands)}};
}
