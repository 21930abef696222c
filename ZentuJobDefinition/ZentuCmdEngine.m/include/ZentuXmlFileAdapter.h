#pragma once

#include <string>

#include "ZentuCmdContainer.h"
#include "ZentuCmdDefs.h"
#include "ZentuCmdEngineExport.h"
#include "ZentuCmdIoConfig.h"
#include "ZentuCmdItemDefs.h"

// The adapter for the XML form of a job definition. It reads nothing yet: Parse leaves the
// container unchanged. It keeps the mapping of the XML command names onto command kinds.
class ZENTU_CMD_ENGINE_API ZentuXmlFileAdapter {
  public:
    // An adapter for the file at path that keeps a copy of the configuration's keyword map.
    ZentuXmlFileAdapter(const std::wstring& path, const ZentuCmdIoConfig& config);
    ZentuXmlFileAdapter(const ZentuXmlFileAdapter& other);
    // Moves the path; the keyword map is copied.
    // NOLINTBEGIN(performance-noexcept-move-constructor,performance-move-constructor-init): the
    // interface declares these moves without noexcept and has them copy what the source keeps.
    ZentuXmlFileAdapter(ZentuXmlFileAdapter&& other);
    // NOLINTEND(performance-noexcept-move-constructor,performance-move-constructor-init)
    ~ZentuXmlFileAdapter();

    // Leaves the container as it is.
    void Parse(ZentuCmdContainer& container);

  private:
    // The command kind of an XML command name (exact, case-sensitive); CMD_PLACEHOLDER if none.
    ZentuCmdDefs::Cmd MatchCmdName(std::string name);
    // The item kind of an XML item name: PLACEHOLDER for every name.
    ZentuCmdItemDefs::CmdItem MatchCmdItemName(std::string name);

    std::wstring path_;
    ZentuCmdItemDefs::KeywordMap enum_map_;
};
