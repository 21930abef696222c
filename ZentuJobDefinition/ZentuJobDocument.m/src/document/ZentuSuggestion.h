#pragma once

#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

// Finds the text that a misspelt one probably meant.
namespace ZentuSuggestion {

// The candidate closest to text (compared in upper case), when it is within a third of the
// text's length (and at least one edit) of it; empty when none is.
std::string closest(const std::string& text, const std::vector<std::string>& candidates);

}  // namespace ZentuSuggestion

// The closest candidates of the texts asked for, among one list that stays as it is: a file that
// misspells the same name many times asks for the same answer again and again.
class ZentuSuggestions {
  public:
    explicit ZentuSuggestions(std::vector<std::string> candidates)
        : candidates_(std::move(candidates)) {}

    // ZentuSuggestion::closest of text among the candidates, worked out once per text.
    const std::string& Closest(const std::string& text);

  private:
    std::vector<std::string> candidates_;
    std::unordered_map<std::string, std::string> closest_;
};
