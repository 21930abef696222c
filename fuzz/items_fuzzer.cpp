#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>

#include "KeywordsDictionary.h"
#include "ZentuCmdAutoItem.h"
#include "ZentuCmdEnumItem.h"
#include "ZentuCmdIntItem.h"
#include "ZentuCmdItemDefs.h"
#include "ZentuCmdScalarItem.h"
#include "fuzz_support.h"

namespace {

// Built once: the map of every keyword is far more expensive to make than one item.
const ZentuCmdItemDefs::KeywordMap& Keywords() {
    static const ZentuCmdItemDefs::KeywordMap keywords = ZentuCmdItemDefs::create_enum_map();
    return keywords;
}

// Set up as item descriptions set theirs up, with keywords that share prefixes so that
// abbreviations are sometimes unique and sometimes ambiguous.
const KeywordsDictionary<int>& Dictionary() {
    static const KeywordsDictionary<int> dictionary = [] {
        KeywordsDictionary<int> built;
        built.Reset(-1);
        for (int code = 32; code <= 127; ++code) {
            built.AllowCharacter(static_cast<char>(code));
        }
        built.BuildAlphabet();
        for (const auto& [keyword, value] :
             {std::pair{"DENSITY", 1}, {"DISTRIBUTION", 2}, {"NODAL", 3}, {"NODAL_VECTOR", 4}}) {
            built.Insert(keyword, value);
        }
        return built;
    }();
    return dictionary;
}

// Every query reads a different part of what construction worked out.
void Query(const ZentuCmdItem& item) {
    static_cast<void>(item.GetString());
    static_cast<void>(item.GetInteger());
    static_cast<void>(item.GetReal());
    static_cast<void>(item.GetVector3d());
    static_cast<void>(item.GetEnum());
    static_cast<void>(item.GetList());
    static_cast<void>(item.GetBreltList());
    // One type beyond each end, because hosts pass kinds read from their own files.
    for (std::int32_t type = -1;
         type <= static_cast<std::int32_t>(ZentuCmdItemDefs::DATA_TYPE_COUNT); ++type) {
        static_cast<void>(item.HasType(static_cast<ZentuCmdItemDefs::DataType>(type)));
    }
}

// A copy carries everything construction worked out, so it must answer every query as well.
void QueryWithClone(const ZentuCmdItem& item) {
    Query(item);
    Query(*item.Clone());
}

}  // namespace

// Runs once before the first input, so that every input meets the same library setup.
extern "C" int LLVMFuzzerInitialize(int*, char***) {
    zentu_fuzz::PrepareLibrary();
    static_cast<void>(Keywords());
    static_cast<void>(Dictionary());
    return 0;
}

// libFuzzer's entry point: any abort, sanitizer report or escaping exception is a finding.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text = zentu_fuzz::TextOf(data, size);
    QueryWithClone(ZentuCmdAutoItem("ITEM", text, Keywords()));
    zentu_fuzz::Completes([&] { QueryWithClone(ZentuCmdIntItem("ITEM", text)); });
    zentu_fuzz::Completes([&] { QueryWithClone(ZentuCmdScalarItem("ITEM", text)); });
    zentu_fuzz::Completes([&] { QueryWithClone(ZentuCmdEnumItem("ITEM", text, Dictionary())); });
    return 0;
}
