#pragma once

#include <map>
#include <string>
#include <utility>

#include "ZentuCmdDefs.h"
#include "ZentuCmdEngineExport.h"
#include "ZentuCmdItemMetaData.h"

// Describes one command kind of the schema: its kind, whether the rule engine creates a default
// command of it, and the items it may hold, keyed by item name (in upper case to be found).
class ZENTU_CMD_ENGINE_API ZentuCmdMetaData {
  public:
    // Item name to item description, in byte order of the names.
    using ItemMap = std::map<std::string, ZentuCmdItemMetaData>;

    // The description of commands whose keyword the schema does not know: CMD_PLACEHOLDER,
    // no default command, no items.
    ZentuCmdMetaData();
    // A description of the kind without items.
    ZentuCmdMetaData(ZentuCmdDefs::Cmd key, bool createDefault);
    // A description of the kind that takes the items over; items is left empty.
    ZentuCmdMetaData(ZentuCmdDefs::Cmd key, ItemMap&& items, bool createDefault);
    ZentuCmdMetaData(const ZentuCmdMetaData& other);
    ZentuCmdMetaData(ZentuCmdMetaData&& other) noexcept;
    ZentuCmdMetaData& operator=(const ZentuCmdMetaData& other);
    ZentuCmdMetaData& operator=(ZentuCmdMetaData&& other) noexcept;
    ~ZentuCmdMetaData();

    // The command kind.
    ZentuCmdDefs::Cmd GetKey() const { return key_; }
    // Whether the rule engine creates a default command when the container holds none.
    bool GetCreateDefault() const { return create_default_; }
    // The item descriptions, for reading and for direct changes.
    ItemMap& GetMetaData() { return items_; }
    // The item descriptions.
    const ItemMap& GetMetaData() const { return items_; }

    // Adds the description under name unless one is there already (then nothing changes and
    // both arguments are left untouched); returns this description for chaining.
    ZentuCmdMetaData& AddItem(std::string&& name, ZentuCmdItemMetaData&& item);
    // Adds a copy of the entry unless its name is there already; returns this description.
    ZentuCmdMetaData& AddItem(const std::pair<const std::string, ZentuCmdItemMetaData>& entry);

  private:
    ZentuCmdDefs::Cmd key_;
    bool create_default_;
    ItemMap items_;
};
