#pragma once

#include <cstdio>
#include <string>

#include "ZentuUtilitiesExport.h"

namespace ZentuFileUtil {

// Opens a file whose path and mode are wide texts (converted to UTF-8); null when it cannot.
ZENTU_UTILITIES_API std::FILE* wfopen(const std::wstring& path, const std::wstring& mode);

// The UTF-8 form of a wide text; unpaired surrogates and invalid code points become U+FFFD.
ZENTU_UTILITIES_API std::string to_utf8(const std::wstring& text);

// The wide form of a UTF-8 text; malformed sequences become U+FFFD.
ZENTU_UTILITIES_API std::wstring from_utf8(const std::string& text);

}  // namespace ZentuFileUtil
