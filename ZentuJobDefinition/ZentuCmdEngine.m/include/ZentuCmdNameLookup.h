#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "ZentuCmdEngineExport.h"
#include "ZentuCmdIoConfig.h"
#include "ZentuCmdItemMetaData.h"
#include "ZentuCmdMetaData.h"

// Finds the descriptions of a file's keywords and item names in a configuration, as a reader does:
// in upper case. A job repeats a few names many times, so the answer for each name is kept under
// the text as written, and a name met again needs neither an upper-case copy nor a look in the
// configuration's maps. Up to MAX_KNOWN keywords, and item names under each, are kept, so that a
// file of ever new names costs no more than looking each one up.
class ZENTU_CMD_ENGINE_API ZentuCmdNameLookup {
  public:
    // An item name as written, in upper case, and its description; null when there is none.
    struct KnownItem {
        std::string written;
        std::string name;
        const ZentuCmdItemMetaData* metadata = nullptr;
    };

    // A keyword as written, its description (null when there is none), and the item names met
    // under it.
    struct KnownCommand {
        std::string written;
        const ZentuCmdMetaData* description = nullptr;
        std::vector<KnownItem> items;
    };

    // How many keywords, and item names per keyword, are kept.
    static constexpr std::size_t MAX_KNOWN = 32;

    // Looks names up in config, which must outlive the lookup.
    explicit ZentuCmdNameLookup(const ZentuCmdIoConfig& config);

    // The keyword's entry; valid until the next call of CommandOf.
    KnownCommand& CommandOf(std::string_view keyword);
    // The entry of an item name under a command's entry; a command without description describes
    // no item. Valid until the next call of ItemOf.
    const KnownItem& ItemOf(std::string_view name, KnownCommand& command);

  private:
    // The text upper-cased as ZentuStringUtil::to_upper does it, in the reused buffer.
    const std::string& Upper(std::string_view text);

    const ZentuCmdIoConfig& config_;
    std::vector<KnownCommand> commands_;
    // Where a keyword, and an item name, met once the kept ones are full stands while it is used.
    KnownCommand overflowCommand_;
    KnownItem overflowItem_;
    std::string upper_;
};
