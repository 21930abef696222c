#include "ZentuJobFiles.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <sstream>
#include <system_error>

#include "KPL_Failure.h"
#include "ZentuCmdDefs.h"
#include "ZentuCmdItemDefs.h"
#include "ZentuCmdParOutput.h"
#include "ZentuFileUtil.h"
#include "ZentuJobDocumentMessages.h"
#include "ZentuParFile.h"

namespace fs = std::filesystem;

namespace {

// A failure whose message is ready to be shown to the user as it stands.
KPL_Failure failure(const std::string& message) {
    return KPL_Failure(message, ZentuJobDocumentMessages::FILES_TAG);
}

// Symbolic links followed at most before a chain counts as a loop, as the system counts.
constexpr int MAX_LINK_HOPS = 40;

// The permission bits that let anybody write a file.
constexpr fs::perms WRITE_PERMISSIONS =
    fs::perms::owner_write | fs::perms::group_write | fs::perms::others_write;

// The number of commands that the writer writes.
std::size_t command_count(const ZentuCmdContainer& container) {
    return static_cast<std::size_t>(std::distance(container.begin(), container.end()));
}

// A new, empty file beside target that no other process has opened; its name is returned.
fs::path create_temporary_beside(const fs::path& target) {
    const fs::path folder = target.has_parent_path() ? target.parent_path() : fs::path(".");
    std::random_device seed;
    std::mt19937_64 random(seed());
    for (int attempt = 0; attempt < 100; ++attempt) {
        fs::path candidate = folder / ("." + target.filename().string() + ".zentu-" +
                                       std::to_string(random() % 1000000000));
        // "x" fails when the file exists, so two writers never share a temporary file.
        if (std::FILE* file = std::fopen(candidate.string().c_str(), "wx")) {
            std::fclose(file);
            return candidate;
        }
        if (errno != EEXIST) {
            throw failure(target.string() + ": cannot write in " + folder.string() + ": " +
                          std::strerror(errno));
        }
    }
    throw failure(target.string() + ": cannot create a temporary file in " + folder.string());
}

// The library's writer reports nothing, so a write is trusted only when the file reads back
// with every command.
bool wrote_completely(const fs::path& file, const ZentuCmdContainer& container) {
    try {
        const ZentuParFile written(ZentuFileUtil::from_utf8(file.string()));
        return static_cast<std::size_t>(std::distance(written.begin(), written.end())) ==
               command_count(container);
    } catch (const KPL_Exception&) {
        return false;
    }
}

// The whole content of a file.
std::string text_of(const fs::path& file) {
    std::ifstream in(file, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

// The file that writing to path changes: path itself, or the end of its chain of symbolic links.
fs::path final_target(const std::string& path) {
    fs::path target(path);
    std::error_code error;
    for (int hop = 0; fs::is_symlink(target, error); ++hop) {
        if (hop == MAX_LINK_HOPS) {
            throw failure(path + ": too many levels of symbolic links");
        }
        const fs::path link = fs::read_symlink(target, error);
        target = link.is_absolute() ? link : target.parent_path() / link;
    }
    return target;
}

// The mode bits decide, not whether this process may write: the superuser may write anything,
// yet a file that its owner made read-only is not meant to change.
void refuse_read_only(const fs::path& file, const std::string& target) {
    std::error_code error;
    const fs::file_status status = fs::status(file, error);
    if (fs::exists(status) && (status.permissions() & WRITE_PERMISSIONS) == fs::perms::none) {
        throw failure(target + ": is read-only; left unchanged");
    }
}

// Writes text as the whole content of file; false when that failed.
bool write_to(const fs::path& file, const std::string& text) {
    std::ofstream out(file, std::ios::binary | std::ios::trunc);
    out.write(text.data(), static_cast<std::streamsize>(text.size()));
    out.close();
    return !out.fail();
}

}  // namespace

std::string ZentuJobFiles::canonical_text(const ZentuCmdContainer& container) {
    const fs::path temporary = create_temporary_beside(fs::temp_directory_path() / "zentu-cmd");
    ZentuCmdParOutput(ZentuFileUtil::from_utf8(temporary.string()), container,
                      ZentuCmdDefs::get_default_cmd_names(), ZentuCmdItemDefs::CMD_ITEM_NAMES)
        .Write(L"w");
    const bool complete = wrote_completely(temporary, container);
    std::string text = text_of(temporary);
    std::error_code error;
    fs::remove(temporary, error);
    if (!complete) {
        throw failure("the library's writer could not write the job completely");
    }
    return text;
}

void ZentuJobFiles::write_text_file(const std::string& text, const std::string& target) {
    const fs::path file = final_target(target);
    refuse_read_only(file, target);
    const fs::path temporary = create_temporary_beside(file);
    std::error_code error;
    if (!write_to(temporary, text)) {
        fs::remove(temporary, error);
        throw failure(target + ": the text could not be written completely");
    }
    if (fs::exists(file, error)) {
        fs::permissions(temporary, fs::status(file, error).permissions(), error);
    }
    fs::rename(temporary, file, error);
    if (error) {
        const std::string reason = error.message();
        fs::remove(temporary, error);
        throw failure(target + ": cannot be replaced: " + reason);
    }
}
