#include "ZentuXmlFileAdapter.h"

#include <utility>

using ZentuCmdDefs::Cmd;

namespace {

struct XmlCommandName {
    const char* name;
    Cmd kind;
};

// XML command names in the order in which they are compared.
constexpr XmlCommandName XML_COMMAND_NAMES[] = {
    {"FEM_INPUT", Cmd::MODEL_INPUT}, {"MODEL_INPUT", Cmd::MODEL_INPUT},
    {"GROUP_DEF", Cmd::GROUP_DEF},   {"DV_TOPO", Cmd::DV},
    {"DRESP", Cmd::DRESP},           {"OBJ_FUNC", Cmd::OBJ_FUNC},
    {"CONFIG", Cmd::CONSTRAINT},     {"CONSTRAINT", Cmd::DV_CONSTRAINT},
    {"SMOOTH", Cmd::MESH_SMOOTH},    {"OPTIMIZE", Cmd::OPTIMIZE},
    {"OPT_PARAM", Cmd::OPT_PARAM},   {"STOP", Cmd::STOP},
    {"USER_FILE", Cmd::OUTPUT},
};

}  // namespace

ZentuXmlFileAdapter::ZentuXmlFileAdapter(const std::wstring& path, const ZentuCmdIoConfig& config)
    : path_(path), enum_map_(config.enum_map) {}

ZentuXmlFileAdapter::ZentuXmlFileAdapter(const ZentuXmlFileAdapter& other) = default;

// NOLINTBEGIN(performance-noexcept-move-constructor,performance-move-constructor-init): the
// interface declares these moves without noexcept and has them copy what the source keeps.
ZentuXmlFileAdapter::ZentuXmlFileAdapter(ZentuXmlFileAdapter&& other)
    : path_(std::move(other.path_)), enum_map_(other.enum_map_) {}
// NOLINTEND(performance-noexcept-move-constructor,performance-move-constructor-init)

ZentuXmlFileAdapter::~ZentuXmlFileAdapter() = default;

void ZentuXmlFileAdapter::Parse(ZentuCmdContainer& /*container*/) {}

// NOLINTNEXTLINE(performance-unnecessary-value-param): the interface takes the name by value.
Cmd ZentuXmlFileAdapter::MatchCmdName(std::string name) {
    for (const XmlCommandName& entry : XML_COMMAND_NAMES) {
        if (name == entry.name) {
            return entry.kind;
        }
    }
    return Cmd::CMD_PLACEHOLDER;
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): the interface takes the name by value.
ZentuCmdItemDefs::CmdItem ZentuXmlFileAdapter::MatchCmdItemName(std::string /*name*/) {
    return ZentuCmdItemDefs::CmdItem::PLACEHOLDER;
}
