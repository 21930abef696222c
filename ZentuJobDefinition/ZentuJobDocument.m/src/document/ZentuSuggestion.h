#pragma once

#include <string>
#include <vector>

// Finds the text that a misspelt one probably meant.
namespace ZentuSuggestion {

// The candidate closest to text (compared in upper case), when it is within a third of the
// text's length (and at least one edit) of it; empty when none is.
std::string closest(const std::string& text, const std::vector<std::string>& candidates);

}  // namespace ZentuSuggestion
