#include "ZentuCmdOutput.h"

#include <memory>

#include "ZentuFileUtil.h"

namespace {

struct FileCloser {
    void operator()(std::FILE* file) const { std::fclose(file); }
};

void write_line(std::FILE* file, const std::string& text) {
    std::fprintf(file, "%s\n", text.c_str());
}

}  // namespace

ZentuCmdOutput::ZentuCmdOutput(const std::wstring& path, const ZentuCmdContainer& container)
    : container_(container), path_(path) {}

ZentuCmdOutput::ZentuCmdOutput(const ZentuCmdOutput& other) = default;

// A moved-from writer stays usable, so moving copies the path.
ZentuCmdOutput::ZentuCmdOutput(ZentuCmdOutput&& other)
    : container_(other.container_), path_(other.path_) {}

ZentuCmdOutput::~ZentuCmdOutput() = default;

void ZentuCmdOutput::Write(const std::wstring& mode) const {
    const std::unique_ptr<std::FILE, FileCloser> file(ZentuFileUtil::wfopen(path_, mode));
    if (!file) {
        return;
    }
    write_line(file.get(), GetHeader());
    for (const ZentuCmd& cmd : container_) {
        const std::array<std::string, 2> lines = GetCommand(cmd);
        write_line(file.get(), lines[0]);
        WriteItems(cmd, file.get());
        write_line(file.get(), lines[1]);
        std::fputs("\n", file.get());
    }
    write_line(file.get(), GetFooter());
}

std::string ZentuCmdOutput::GetHeader() const {
    return {};
}

std::string ZentuCmdOutput::GetFooter() const {
    return {};
}

void ZentuCmdOutput::WriteItems(const ZentuCmd& cmd, std::FILE* file) const {
    if (file == nullptr) {
        return;
    }
    for (std::size_t kind = 0; kind < ZentuCmdItemDefs::CMD_ITEM_KIND_COUNT; ++kind) {
        const auto itemKind = static_cast<ZentuCmdItemDefs::CmdItem>(kind);
        for (const std::unique_ptr<const ZentuCmdItem>& item : cmd.Items(itemKind)) {
            std::fprintf(file, "  %s\n", GetItem(itemKind, *item).c_str());
        }
    }
}
