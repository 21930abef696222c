#pragma once

#include <string>
#include <utility>

#include "ZentuStringUtil.h"

namespace ZentuUpperCase {

// The text with every byte from 'a' to 'z' before its first NUL raised to upper case, as the
// utility library raises it for every reader of job files.
inline std::string to_upper(std::string text) {
    return ZentuStringUtil::to_upper(std::move(text));
}

}  // namespace ZentuUpperCase
