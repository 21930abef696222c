#include "JobFiles.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <ostream>
#include <random>
#include <system_error>

#include "KPL_Failure.h"
#include "ToolError.h"
#include "ZentuCmdDefs.h"
#include "ZentuCmdItemDefs.h"
#include "ZentuCmdParOutput.h"
#include "ZentuFileUtil.h"
#include "ZentuParFile.h"
#include "ZentuParFileAdapter.h"

namespace fs = std::filesystem;

namespace zentu_cmd {

namespace {

std::size_t command_count(const ZentuCmdContainer& container) {
    return static_cast<std::size_t>(std::distance(container.begin(), container.end()));
}

// A new, empty file beside target that no other process has opened; its name is returned.
fs::path create_temporary_beside(const fs::path& target) {
    const fs::path folder = target.has_parent_path() ? target.parent_path() : fs::path(".");
    std::random_device seed;
    std::mt19937_64 random(seed());
    for (int attempt = 0; attempt < 100; ++attempt) {
        const fs::path candidate = folder / ("." + target.filename().string() + ".zentu-" +
                                             std::to_string(random() % 1000000000));
        // "x" fails when the file exists, so two writers never share a temporary file.
        if (std::FILE* file = std::fopen(candidate.string().c_str(), "wx")) {
            std::fclose(file);
            return candidate;
        }
        if (errno != EEXIST) {
            throw ToolError(target.string() + ": cannot write in " + folder.string() + ": " +
                            std::strerror(errno));
        }
    }
    throw ToolError(target.string() + ": cannot create a temporary file in " + folder.string());
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

void write_to(const fs::path& file, const ZentuCmdContainer& container) {
    ZentuCmdParOutput(ZentuFileUtil::from_utf8(file.string()), container,
                      ZentuCmdDefs::get_default_cmd_names(), ZentuCmdItemDefs::CMD_ITEM_NAMES)
        .Write(L"w");
}

}  // namespace

ZentuCmdContainer read_job(const std::string& path, const ZentuJobSchema& schema,
                           ZentuCompletion completion) {
    ZentuCmdContainer container;
    const ZentuBoundRules::Scope rules(schema.BoundRules());
    ZentuParFileAdapter(ZentuFileUtil::from_utf8(path), schema.BuildConfig(completion))
        .Parse(container);
    return container;
}

void write_job_file(const ZentuCmdContainer& container, const std::string& target) {
    const fs::path targetPath(target);
    const fs::path temporary = create_temporary_beside(targetPath);
    std::error_code error;
    write_to(temporary, container);
    if (!wrote_completely(temporary, container)) {
        fs::remove(temporary, error);
        throw ToolError(target + ": the text could not be written completely");
    }
    if (fs::exists(targetPath, error)) {
        fs::permissions(temporary, fs::status(targetPath, error).permissions(), error);
    }
    fs::rename(temporary, targetPath, error);
    if (error) {
        const std::string reason = error.message();
        fs::remove(temporary, error);
        throw ToolError(target + ": cannot be replaced: " + reason);
    }
}

void write_job(const ZentuCmdContainer& container, std::ostream& out) {
    const fs::path temporary = create_temporary_beside(fs::temp_directory_path() / "zentu-cmd");
    write_to(temporary, container);
    std::ifstream written(temporary, std::ios::binary);
    out << written.rdbuf();
    written.close();
    std::error_code error;
    fs::remove(temporary, error);
}

}  // namespace zentu_cmd
