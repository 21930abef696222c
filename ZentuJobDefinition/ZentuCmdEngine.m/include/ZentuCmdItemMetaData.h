#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

#include "KeywordsDictionary.h"
#include "ZentuCmdDefs.h"
#include "ZentuCmdEngineExport.h"
#include "ZentuCmdItemDefs.h"

// Describes one item that a command kind may hold: the item kind it fills, how its value text is
// typed, its default value and, for keyword items, the keywords it accepts. A plain record.
class ZENTU_CMD_ENGINE_API ZentuCmdItemMetaData {
  public:
    // A list of values that the host keeps with a description; the engine only copies it.
    template <typename T>
    struct ValueList {
        std::vector<T> values;
    };

    // A string description of a placeholder item, without default.
    ZentuCmdItemMetaData();
    // A description of an item of the given kind whose type is decided by its text.
    explicit ZentuCmdItemMetaData(ZentuCmdItemDefs::CmdItem key);
    // A description of the given kind and type; it has a default when defaultValue is not empty.
    ZentuCmdItemMetaData(ZentuCmdItemDefs::CmdItem key, ZentuCmdItemDefs::DataType type,
                         const std::string& defaultValue, const std::string& extraText,
                         int extraValue);
    // An integer description whose default is defaultValue.
    ZentuCmdItemMetaData(ZentuCmdItemDefs::CmdItem key, int defaultValue,
                         const std::string& extraText, int extraValue);
    // A real description whose default is defaultValue.
    ZentuCmdItemMetaData(ZentuCmdItemDefs::CmdItem key, double defaultValue,
                         const std::string& extraText, int extraValue);
    // A string description whose default is defaultValue, even when that is empty.
    ZentuCmdItemMetaData(ZentuCmdItemDefs::CmdItem key, const std::string& defaultValue,
                         const std::string& extraText, int extraValue);
    // A keyword description accepting the given keywords (the first value of a repeated text
    // wins); it has a default when defaultValue is not empty.
    ZentuCmdItemMetaData(ZentuCmdItemDefs::CmdItem key,
                         const std::initializer_list<std::pair<const char*, int>>& keywords,
                         const std::string& defaultValue);
    // A description of an item that refers to a command of referencedKind; never a default.
    ZentuCmdItemMetaData(ZentuCmdItemDefs::CmdItem key, ZentuCmdDefs::Cmd referencedKind,
                         const std::string& defaultValue);

    ZentuCmdItemMetaData(const ZentuCmdItemMetaData& other);
    ZentuCmdItemMetaData(ZentuCmdItemMetaData&& other) noexcept;
    ZentuCmdItemMetaData& operator=(const ZentuCmdItemMetaData& other);
    ZentuCmdItemMetaData& operator=(ZentuCmdItemMetaData&& other) noexcept;
    ~ZentuCmdItemMetaData();

    // The item kind under which an item built from this description is stored.
    ZentuCmdItemDefs::CmdItem key;
    // Host text kept with the description; the engine never reads it.
    std::string extra_text;
    // How value text is typed.
    ZentuCmdItemDefs::DataType type;
    // The numeric default: default_int for integer descriptions, default_real for real ones.
    union {
        std::int32_t default_int;
        double default_real = 0.0;
    };
    // The default text, for every type but integer and real.
    std::string default_value;
    // Host data kept with the description; the engine never reads it.
    ValueList<int> spare_list;
    // Host data kept with the description; the engine never reads it.
    std::vector<int> spare_ints;
    // Whether the rule engine adds the default to commands that lack the item kind.
    bool has_default = false;
    // The command kind that a reference description names, stored twice.
    ValueList<ZentuCmdDefs::Cmd> referenced_kinds;
    // The keywords of a keyword description and their values; -1 for any other text.
    KeywordsDictionary<int> keywords;
    // 1 or 0 as the constructor sets it; the engine never reads it.
    std::int32_t extra_flag = 0;
    // The trailing integer argument of the constructors that take one, else 1.
    std::int32_t extra_value = 1;

  private:
    void PrepareKeywords();
};
