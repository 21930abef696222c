#include "ZentuCmdOutput.h"

#include <cstring>
#include <memory>
#include <typeinfo>

#include "ZentuCmdParOutput.h"
#include "ZentuFileUtil.h"
#include "io/ZentuParItemText.h"

namespace {

// The size of the file's buffer: a few large writes to the system rather than one per page.
constexpr std::size_t FILE_BUFFER_SIZE = std::size_t{1} << 20;

struct FileCloser {
    void operator()(std::FILE* file) const { std::fclose(file); }
};

// Cuts the text appended to out from start on at its first NUL, where "%s" would stop.
void cut_at_nul(std::string& out, std::size_t start) {
    const std::size_t nul = out.find('\0', start);
    if (nul != std::string::npos) {
        out.resize(nul);
    }
}

// Writes the text as "%s\n" does.
void write_line(std::FILE* file, const std::string& text) {
    std::fwrite(text.c_str(), 1, std::strlen(text.c_str()), file);
    std::fputc('\n', file);
}

}  // namespace

ZentuCmdOutput::ZentuCmdOutput(const std::wstring& path, const ZentuCmdContainer& container)
    : container_(container), path_(path) {}

ZentuCmdOutput::ZentuCmdOutput(const ZentuCmdOutput& other) = default;

// A moved-from writer stays usable, so moving copies the path.
// NOLINTBEGIN(performance-noexcept-move-constructor,performance-move-constructor-init): the
// interface declares these moves without noexcept and has them copy what the source keeps.
ZentuCmdOutput::ZentuCmdOutput(ZentuCmdOutput&& other)
    : container_(other.container_), path_(other.path_) {}
// NOLINTEND(performance-noexcept-move-constructor,performance-move-constructor-init)

ZentuCmdOutput::~ZentuCmdOutput() = default;

void ZentuCmdOutput::Write(const std::wstring& mode) const {
    const std::unique_ptr<std::FILE, FileCloser> file(ZentuFileUtil::wfopen(path_, mode));
    if (!file) {
        return;
    }
    std::setvbuf(file.get(), nullptr, _IOFBF, FILE_BUFFER_SIZE);
    write_line(file.get(), GetHeader());
    for (const ZentuCmd& cmd : container_) {
        const std::array<std::string, 2> lines = GetCommand(cmd);
        write_line(file.get(), lines[0]);
        WriteItems(cmd, file.get());
        write_line(file.get(), lines[1]);
        std::fputc('\n', file.get());
    }
    write_line(file.get(), GetFooter());
}

std::string ZentuCmdOutput::GetHeader() const {
    return {};
}

std::string ZentuCmdOutput::GetFooter() const {
    return {};
}

// The item lines of a command are gathered in one text per thread, reused from command to command,
// and written at once. A writer of exactly the parameter-file class appends each item in place;
// any other class, a host's derived one included, gives its items' texts through GetItem.
void ZentuCmdOutput::WriteItems(const ZentuCmd& cmd, std::FILE* file) const {
    if (file == nullptr) {
        return;
    }
    thread_local std::string lines;
    lines.clear();
    const bool parameterFile = &typeid(*this) == &typeid(ZentuCmdParOutput);
    for (std::size_t kind = 0; kind < ZentuCmdItemDefs::CMD_ITEM_KIND_COUNT; ++kind) {
        const auto itemKind = static_cast<ZentuCmdItemDefs::CmdItem>(kind);
        for (const std::unique_ptr<ZentuCmdItem>& item : cmd.GetItemRange(itemKind)) {
            const std::size_t start = lines.size();
            lines += "  ";
            if (parameterFile) {
                ZentuParItemText::append(*item, lines);
            } else {
                lines += GetItem(itemKind, *item);
            }
            cut_at_nul(lines, start);
            lines += '\n';
        }
    }
    std::fwrite(lines.data(), 1, lines.size(), file);
}
