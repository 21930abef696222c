#pragma once

#include <string>
#include <string_view>

#include "ZentuCmdItem.h"
#include "items/ZentuOwnItems.h"

namespace ZentuParItemText {

// Whether the item is of a library class that keeps the base's answer, false, to HasList and
// HasBreltList: its value always stays on the name's line, and asking would cost two calls.
inline bool StaysOnOneLine(const ZentuCmdItem& item) {
    return ZentuOwnItems::IsExactly<ZentuCmdStringItem>(item) ||
           ZentuOwnItems::IsExactly<ZentuCmdReferenceItem>(item) ||
           ZentuOwnItems::IsExactly<ZentuCmdIntItem>(item) ||
           ZentuOwnItems::IsExactly<ZentuCmdScalarItem>(item) ||
           ZentuOwnItems::IsExactly<ZentuCmdEnumItem>(item) ||
           ZentuOwnItems::IsExactly<ZentuCmdRawStringItem>(item);
}

// What stands between the item's name and its text: " = ", or a line break and two blanks when
// the text may span lines, as integer lists and lists holding a line break do.
inline std::string_view separator(const ZentuCmdItem& item, std::string_view text) {
    const bool spansLines =
        !StaysOnOneLine(item) &&
        (item.HasBreltList() || (item.HasList() && text.find('\n') != std::string_view::npos));
    return spansLines ? "\n  " : " = ";
}

// Appends the item as a parameter file holds it.
inline void append(const ZentuCmdItem& item, std::string& out) {
    out += item.GetName();
    ZentuOwnItems::WithText(item, [&item, &out](std::string_view text) {
        out += separator(item, text);
        out += text;
    });
}

}  // namespace ZentuParItemText
