#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <typeinfo>

#include "ZentuCmd.h"
#include "ZentuCmdAutoItem.h"
#include "ZentuCmdEnumItem.h"
#include "ZentuCmdIdentifier.h"
#include "ZentuCmdIntItem.h"
#include "ZentuCmdRawStringItem.h"
#include "ZentuCmdReferenceItem.h"
#include "ZentuCmdScalarItem.h"
#include "ZentuCmdStringItem.h"

// What the library knows of its own item classes, for the loops that visit every item of a job:
// the text that GetString() copies can be read in place, and some classes ignore references.
// Items of any other class, derived ones included, get the answers of their virtual operations.
struct ZentuOwnItems {
    // Whether the item is exactly of class Item. The library's classes have their type
    // information in the library alone, so comparing its address suffices, where comparing
    // type_info objects may compare their names.
    template <typename Item>
    static bool IsExactly(const ZentuCmdItem& item) {
        return &typeid(item) == &typeid(Item);
    }

    // The text that GetString() returns, held by the item itself; null for an item whose class
    // computes its text or is not one of the library's.
    static const std::string* TextOf(const ZentuCmdItem& item) {
        if (IsExactly<ZentuCmdStringItem>(item) || IsExactly<ZentuCmdRawStringItem>(item)) {
            return &static_cast<const ZentuCmdRawStringItem&>(item).text_;
        }
        if (IsExactly<ZentuCmdAutoItem>(item)) {
            return &static_cast<const ZentuCmdAutoItem&>(item).text_;
        }
        if (IsExactly<ZentuCmdEnumItem>(item)) {
            return &static_cast<const ZentuCmdEnumItem&>(item).text_;
        }
        return nullptr;
    }

    // The text that GetString() would return, read in place: a reference item's text is its
    // target's identifier. Nothing when the text has to be computed or copied.
    static std::optional<std::string_view> TextInPlace(const ZentuCmdItem& item) {
        if (const std::string* text = TextOf(item)) {
            return *text;
        }
        if (!IsExactly<ZentuCmdReferenceItem>(item)) {
            return std::nullopt;
        }
        const ZentuCmd* target = static_cast<const ZentuCmdReferenceItem&>(item).reference_;
        const ZentuCmdItem* identifierItem =
            target != nullptr ? ZentuCmdIdentifier::item_of(*target) : nullptr;
        if (identifierItem == nullptr) {
            return std::string_view();
        }
        const std::string* identifier = TextOf(*identifierItem);
        return identifier != nullptr ? std::optional<std::string_view>(*identifier) : std::nullopt;
    }

    // What use returns for the text that GetString() would return, read in place when the
    // item's class allows.
    template <typename Use>
    static auto WithText(const ZentuCmdItem& item, Use use) {
        if (const std::optional<std::string_view> text = TextInPlace(item)) {
            return use(*text);
        }
        const std::string copy = item.GetString();
        return use(std::string_view(copy));
    }

    // Whether the item is of a library class whose AddReference does nothing and whose readings
    // have no effect, so that resolving references may pass it over.
    static bool IgnoresReferences(const ZentuCmdItem& item) {
        return IsExactly<ZentuCmdStringItem>(item) || IsExactly<ZentuCmdRawStringItem>(item) ||
               IsExactly<ZentuCmdEnumItem>(item) || IsExactly<ZentuCmdIntItem>(item) ||
               IsExactly<ZentuCmdScalarItem>(item);
    }
};
