#pragma once

#include <string>

#include "ZentuCmdContainer.h"
#include "ZentuCmdEngineExport.h"
#include "ZentuCmdIoConfig.h"

// Reads a parameter file into a container: types every command and item against the
// configuration's schema, then completes the container with default items, default commands,
// references and the configured rules.
class ZENTU_CMD_ENGINE_API ZentuParFileAdapter {
  public:
    // An adapter for the file at path that takes the configuration over.
    ZentuParFileAdapter(const std::wstring& path, ZentuCmdIoConfig&& config);
    ZentuParFileAdapter(const ZentuParFileAdapter& other);
    // Moves the path; the configuration is copied, so the source stays usable.
    // NOLINTBEGIN(performance-noexcept-move-constructor,performance-move-constructor-init): the
    // interface declares these moves without noexcept and has them copy what the source keeps.
    ZentuParFileAdapter(ZentuParFileAdapter&& other);
    // NOLINTEND(performance-noexcept-move-constructor,performance-move-constructor-init)
    ~ZentuParFileAdapter();

    // Reads the file into container, adding to what it holds. Throws KPL_Failure when the file
    // cannot be read or split, or when an item's text is refused; in the latter case the
    // commands read so far stay and the container is not completed.
    void Parse(ZentuCmdContainer& container) const;

  private:
    std::wstring path_;
    ZentuCmdIoConfig config_;
};
