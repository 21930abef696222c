#pragma once

#include <string>
#include <string_view>

#include "ZentuCmdItem.h"
#include "items/ZentuOwnItems.h"

namespace ZentuParItemText {

// Appends the item as a parameter file holds it: its name, then its text after " = ", or on a
// line of its own when the text may span lines, as integer lists and lists holding a line break do.
inline void append(const ZentuCmdItem& item, std::string& out) {
    out += item.GetName();
    ZentuOwnItems::WithText(item, [&item, &out](std::string_view text) {
        const bool spansLines =
            item.HasBreltList() || (item.HasList() && text.find('\n') != std::string_view::npos);
        out += spansLines ? "\n  " : " = ";
        out += text;
    });
}

}  // namespace ZentuParItemText
