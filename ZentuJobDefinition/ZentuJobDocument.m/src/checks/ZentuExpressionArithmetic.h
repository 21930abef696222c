#pragma once

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

// What an expression over responses means as arithmetic: a weight per referenced response, in
// the order of first appearance, and the parts that the expansion into weighted combinations
// drops or cannot express.
namespace ZentuExpressionArithmetic {

// A part of the expression, as byte offsets [begin, end) into its text, and what it is.
struct Part {
    std::size_t begin = 0;
    std::size_t end = 0;
    std::string what;
};

// The expression read as a linear combination of its references.
struct Reading {
    // The reference names (upper case, without '%') with their weights.
    std::vector<std::pair<std::string, double>> weights;
    // Quotients, powers, products of two references, constant terms, an empty expression.
    std::vector<Part> unsupported;
    // The expression nests too deep to be read here; nothing else is known of it.
    bool tooDeep = false;
};

// How deep parentheses may nest before an expression is left unread.
constexpr std::size_t MAX_DEPTH = 200;

// Reads an expression that the tokenizer accepts: numbers, %NAME% references, + - * / ^ and
// parentheses, blanks between them.
Reading read(const std::string& text);

}  // namespace ZentuExpressionArithmetic
