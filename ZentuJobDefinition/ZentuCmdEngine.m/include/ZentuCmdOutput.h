#pragma once

#include <array>
#include <cstdio>
#include <string>

#include "ZentuCmd.h"
#include "ZentuCmdContainer.h"
#include "ZentuCmdEngineExport.h"
#include "ZentuCmdItem.h"
#include "ZentuCmdItemDefs.h"

// Writes the commands of a container to a file in container order; derived writers supply the
// text of the header, the footer, each command's opening and closing lines and each item.
class ZENTU_CMD_ENGINE_API ZentuCmdOutput {
  public:
    ZentuCmdOutput(const ZentuCmdOutput& other);
    // NOLINTBEGIN(performance-noexcept-move-constructor,performance-move-constructor-init): the
    // interface declares these moves without noexcept and has them copy what the source keeps.
    ZentuCmdOutput(ZentuCmdOutput&& other);
    // NOLINTEND(performance-noexcept-move-constructor,performance-move-constructor-init)
    ZentuCmdOutput& operator=(const ZentuCmdOutput&) = delete;
    ZentuCmdOutput& operator=(ZentuCmdOutput&&) = delete;
    virtual ~ZentuCmdOutput();

    // Opens the file with the given mode (L"w" replaces it, L"a" appends), writes the whole
    // container and closes it; when the file cannot be opened nothing is written.
    void Write(const std::wstring& mode) const;

  protected:
    // A writer of container to the file at path; the container must outlive the writer.
    ZentuCmdOutput(const std::wstring& path, const ZentuCmdContainer& container);

    // The text before the first command; empty here.
    virtual std::string GetHeader() const;
    // The text after the last command; empty here.
    virtual std::string GetFooter() const;
    // The line that opens a command and the line that closes it.
    virtual std::array<std::string, 2> GetCommand(const ZentuCmd& cmd) const = 0;
    // The text of one item.
    virtual std::string GetItem(ZentuCmdItemDefs::CmdItem kind, const ZentuCmdItem& item) const = 0;

  private:
    void WriteItems(const ZentuCmd& cmd, std::FILE* file) const;

    const ZentuCmdContainer& container_;
    std::wstring path_;
};
