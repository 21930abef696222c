#pragma once

#include <string>

#include "ZentuFinding.h"

// A change of a job file's text: the range replaced by the text.
struct ZentuTextEdit {
    ZentuTextRange range;
    std::string text;
};
