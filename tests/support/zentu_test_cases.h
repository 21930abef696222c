#pragma once

#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>

// Test cases kept as data beside the tests that run them, so that a table reads as a table.
//
// A case file holds one case per line; blank lines and lines that start with '#' are passed
// over. The fields of a case are separated by " | "; inside a field "\n" stands for a line feed,
// "\t" for a tab, "\|" for a bar and "\\" for a backslash.
namespace zentu_test {

// One line of a case file: its fields and where it stands, for failure messages.
struct DataCase {
    std::string where;
    std::vector<std::string> fields;
};

// The field with its escapes resolved.
inline std::string Unescaped(const std::string& text) {
    std::string out;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '\\' || i + 1 == text.size()) {
            out += text[i];
            continue;
        }
        const char next = text[++i];
        out += next == 'n' ? '\n' : next == 't' ? '\t' : next;
    }
    return out;
}

// A case field with each "<xHH>" replaced by the byte HH, for bytes a case file cannot show.
inline std::string Bytes(std::string text) {
    for (std::size_t at = text.find("<x"); at != std::string::npos; at = text.find("<x", at + 1)) {
        text.replace(at, 5, 1, static_cast<char>(std::stoi(text.substr(at + 2, 2), nullptr, 16)));
    }
    return text;
}

// The fields of a line split at " | " that is not escaped.
inline std::vector<std::string> SplitFields(const std::string& line) {
    std::vector<std::string> fields(1);
    for (std::size_t i = 0; i < line.size(); ++i) {
        if (line[i] == '\\' && i + 1 < line.size()) {
            fields.back() += line.substr(i, 2);
            ++i;
        } else if (line.compare(i, 3, " | ") == 0) {
            fields.emplace_back();
            i += 2;
        } else {
            fields.back() += line[i];
        }
    }
    for (std::string& field : fields) {
        field = Unescaped(field);
    }
    return fields;
}

// The cases of a file under tests/, each with the number of fields the caller expects.
inline std::vector<DataCase> DataCases(const std::string& relativePath, std::size_t fieldCount) {
    const std::string path = std::string(ZENTU_TESTS_DIR) + "/" + relativePath;
    std::ifstream in(path);
    if (!in) {
        throw std::runtime_error("cannot read " + path);
    }
    std::vector<DataCase> cases;
    std::string line;
    for (std::size_t number = 1; std::getline(in, line); ++number) {
        if (line.empty() || line[0] == '#') {
            continue;
        }
        DataCase item{relativePath + ":" + std::to_string(number), SplitFields(line)};
        if (item.fields.size() != fieldCount) {
            throw std::runtime_error(item.where + ": " + std::to_string(item.fields.size()) +
                                     " fields, expected " + std::to_string(fieldCount));
        }
        cases.push_back(std::move(item));
    }
    return cases;
}

}  // namespace zentu_test
