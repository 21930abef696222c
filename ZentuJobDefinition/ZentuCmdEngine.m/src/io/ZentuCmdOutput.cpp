#include "ZentuCmdOutput.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>
#include <typeinfo>
#include <utility>

#include "ZentuCmdParOutput.h"
#include "ZentuCmdScalarItem.h"
#include "ZentuFileUtil.h"
#include "io/ZentuParItemText.h"

namespace {

// The size of the file's buffer: a few large writes to the system rather than one per page.
constexpr std::size_t FILE_BUFFER_SIZE = std::size_t{1} << 20;
// How much text the parameter-file writer gathers before writing it: pieces that the system
// copies from the processor's cache, few enough that the calls cost nothing.
constexpr std::size_t PIECE_SIZE = std::size_t{1} << 17;
// How many commands are searched for a NUL at once: one search over their text costs less than
// one per line, and a batch whose text holds a NUL is built again line by line.
constexpr std::ptrdiff_t BATCH_SIZE = 64;

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

// Copies piece to out and returns the position after it. An empty view may have no data at all,
// which memcpy must not be given even for no bytes.
char* put(char* out, std::string_view piece) {
    if (!piece.empty()) {
        std::memcpy(out, piece.data(), piece.size());
    }
    return out + piece.size();
}

// The position of the lowest set bit of a nonzero mask.
std::size_t lowest_bit(std::uint64_t mask) {
#if defined(__GNUC__)
    return static_cast<std::size_t>(__builtin_ctzll(mask));
#else
    std::size_t bit = 0;
    while ((mask & 1U) == 0) {
        mask >>= 1;
        ++bit;
    }
    return bit;
#endif
}

// The texts of the real values met in one writing, one per slot chosen by the value's bits: a job
// repeats few values, and printing a double exactly and shortest costs more than writing a line.
class RealTexts {
  public:
    // The text of an item of the library's real class, whose text depends on its value alone.
    std::string_view Of(const ZentuCmdItem& item) {
        const double value = item.GetReal();
        std::uint64_t bits = 0;
        std::memcpy(&bits, &value, sizeof bits);
        Slot& slot = slots_[(bits * HASH_FACTOR) >> (64 - SLOT_BITS)];
        if (!slot.filled || slot.bits != bits) {
            slot.text = item.GetString();
            slot.bits = bits;
            slot.filled = true;
        }
        return slot.text;
    }

  private:
    static constexpr unsigned SLOT_BITS = 8;
    // Spreads the bits that differ between nearby values over the slot number.
    static constexpr std::uint64_t HASH_FACTOR = 0x9E3779B97F4A7C15U;

    // A value's bits and its text.
    struct Slot {
        std::uint64_t bits = 0;
        bool filled = false;
        std::string text;
    };

    std::array<Slot, std::size_t{1} << SLOT_BITS> slots_;
};

// The text of a parameter file, gathered in a buffer of its own and written in large pieces, the
// file's own buffer set aside. Each line ends at its first NUL, as "%s\n" would end it.
class ParFileText {
  public:
    // Text for the file, which must have no buffer of its own.
    explicit ParFileText(std::FILE* file)
        : file_(file), data_(new char[2 * PIECE_SIZE]), capacity_(2 * PIECE_SIZE) {}

    // Appends the text and a line break, the text cut at a NUL when cutAtNul is set.
    void AppendLine(std::string_view text, bool cutAtNul) {
        const std::size_t start = size_;
        EndAt(put(Room(text.size() + 1), text));
        if (cutAtNul) {
            CutAtNul(start);
        }
        data_[size_++] = '\n';
    }

    // Appends the commands, each as its name, its items' lines and "END_" and an empty line.
    void AppendCommands(ZentuCmdContainer::const_iterator first,
                        ZentuCmdContainer::const_iterator last) {
        const std::size_t start = size_;
        for (auto cmd = first; cmd != last; ++cmd) {
            AppendCommand(**cmd, false);
        }
        if (std::memchr(data_.get() + start, '\0', size_ - start) != nullptr) {
            size_ = start;
            for (auto cmd = first; cmd != last; ++cmd) {
                AppendCommand(**cmd, true);
            }
        }
        if (size_ >= PIECE_SIZE) {
            Flush();
        }
    }

    // Writes the text gathered so far.
    void Flush() {
        std::fwrite(data_.get(), 1, size_, file_);
        size_ = 0;
    }

  private:
    // The place for size more characters at the end of the text; a batch of commands stays in
    // the buffer until it is searched for NULs, so the buffer grows rather than being written.
    char* Room(std::size_t size) {
        if (capacity_ - size_ < size) {
            const std::size_t capacity = std::max(2 * capacity_, size_ + size);
            std::unique_ptr<char[]> data(new char[capacity]);
            std::memcpy(data.get(), data_.get(), size_);
            data_ = std::move(data);
            capacity_ = capacity;
        }
        return data_.get() + size_;
    }

    // Moves the end of the text to end, a position in the buffer.
    void EndAt(const char* end) { size_ = static_cast<std::size_t>(end - data_.get()); }

    // Cuts the text from start on at its first NUL.
    void CutAtNul(std::size_t start) {
        const void* nul = std::memchr(data_.get() + start, '\0', size_ - start);
        if (nul != nullptr) {
            EndAt(static_cast<const char*>(nul));
        }
    }

    // Appends the command's name, its items and its closing lines.
    void AppendCommand(const ZentuCmd& cmd, bool cutAtNul) {
        AppendLine(cmd.GetName(), cutAtNul);
        for (std::uint64_t kinds = cmd.KindsWithSequences(); kinds != 0; kinds &= kinds - 1) {
            const auto kind = static_cast<ZentuCmdItemDefs::CmdItem>(lowest_bit(kinds));
            for (const std::unique_ptr<ZentuCmdItem>& item : cmd.GetItemRange(kind)) {
                AppendItem(*item, cutAtNul);
            }
        }
        EndAt(put(Room(6), "END_\n\n"));
    }

    // Appends the item's line: two blanks, then the item as a parameter file holds it.
    void AppendItem(const ZentuCmdItem& item, bool cutAtNul) {
        if (ZentuOwnItems::IsExactly<ZentuCmdScalarItem>(item)) {
            AppendItem(item, real_texts_.Of(item), cutAtNul);
            return;
        }
        ZentuOwnItems::WithText(item, [this, &item, cutAtNul](std::string_view text) {
            AppendItem(item, text, cutAtNul);
        });
    }

    // Appends the item's line with the given text.
    void AppendItem(const ZentuCmdItem& item, std::string_view text, bool cutAtNul) {
        const std::string_view name = item.GetName();
        const std::string_view between = ZentuParItemText::separator(item, text);
        const std::size_t start = size_;
        char* out = Room(2 + name.size() + between.size() + text.size() + 1);
        EndAt(put(put(put(put(out, "  "), name), between), text));
        if (cutAtNul) {
            CutAtNul(start);
        }
        data_[size_++] = '\n';
    }

    std::FILE* file_;
    std::unique_ptr<char[]> data_;
    std::size_t size_ = 0;
    std::size_t capacity_;
    RealTexts real_texts_;
};

// Writes the container as a parameter file between the header and footer lines.
void write_par_file(std::FILE* file, const ZentuCmdContainer& container, const std::string& header,
                    const std::string& footer) {
    std::setvbuf(file, nullptr, _IONBF, 0);
    ParFileText text(file);
    text.AppendLine(header, true);
    for (std::size_t kind = 0; kind < ZentuCmdDefs::CMD_KIND_COUNT; ++kind) {
        const auto commands = container.GetCommandRange(static_cast<ZentuCmdDefs::Cmd>(kind));
        for (auto first = commands.begin(); first != commands.end();) {
            const auto last = first + std::min(BATCH_SIZE, commands.end() - first);
            text.AppendCommands(first, last);
            first = last;
        }
    }
    text.AppendLine(footer, true);
    text.Flush();
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
    if (&typeid(*this) == &typeid(ZentuCmdParOutput)) {
        write_par_file(file.get(), container_, GetHeader(), GetFooter());
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
// and written at once; each item's text comes from GetItem, which a derived writer overrides.
void ZentuCmdOutput::WriteItems(const ZentuCmd& cmd, std::FILE* file) const {
    if (file == nullptr) {
        return;
    }
    thread_local std::string lines;
    lines.clear();
    for (std::size_t kind = 0; kind < ZentuCmdItemDefs::CMD_ITEM_KIND_COUNT; ++kind) {
        const auto itemKind = static_cast<ZentuCmdItemDefs::CmdItem>(kind);
        for (const std::unique_ptr<ZentuCmdItem>& item : cmd.GetItemRange(itemKind)) {
            const std::size_t start = lines.size();
            lines += "  ";
            lines += GetItem(itemKind, *item);
            cut_at_nul(lines, start);
            lines += '\n';
        }
    }
    std::fwrite(lines.data(), 1, lines.size(), file);
}
