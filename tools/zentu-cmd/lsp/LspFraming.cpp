#include "lsp/LspFraming.h"

#include <charconv>
#include <istream>
#include <optional>
#include <ostream>

#include "ZentuStringUtil.h"

namespace zentu_cmd::lsp {

namespace {

// The header that gives the body's length, compared without regard to case.
constexpr std::string_view LENGTH_HEADER = "CONTENT-LENGTH:";
// How many bytes of a body are read at a time, so that a length that promises more than the
// stream holds costs no more memory than what arrives.
constexpr std::size_t CHUNK = 1 << 16;

// The length that a header line gives, when it is a Content-Length line with a number.
std::optional<std::size_t> length_of(std::string line) {
    ZentuStringUtil::Trim(line);
    if (!ZentuStringUtil::equals_ignoring_case(line.substr(0, LENGTH_HEADER.size()),
                                               LENGTH_HEADER)) {
        return std::nullopt;
    }
    std::string number = line.substr(LENGTH_HEADER.size());
    ZentuStringUtil::Trim(number);
    std::size_t length = 0;
    const auto [end, error] = std::from_chars(number.data(), number.data() + number.size(), length);
    if (error != std::errc() || end != number.data() + number.size() || number.empty()) {
        return std::nullopt;
    }
    return length;
}

}  // namespace

Frame read_frame(std::istream& in) {
    std::optional<std::size_t> length;
    std::string line;
    bool headers = false;
    while (std::getline(in, line)) {
        if (line == "\r" || line.empty()) {
            if (!headers) {
                continue;  // blank lines between messages
            }
            break;
        }
        headers = true;
        if (const auto given = length_of(line)) {
            length = given;
        }
    }
    if (!in) {
        return {};
    }
    if (!length) {
        return {Frame::Status::MALFORMED, {}};
    }
    Frame frame{Frame::Status::MESSAGE, {}};
    while (frame.body.size() < *length) {
        const std::size_t wanted = std::min(CHUNK, *length - frame.body.size());
        const std::size_t had = frame.body.size();
        frame.body.resize(had + wanted);
        in.read(&frame.body[had], static_cast<std::streamsize>(wanted));
        if (static_cast<std::size_t>(in.gcount()) != wanted) {
            return {};
        }
    }
    return frame;
}

void write_frame(std::ostream& out, const std::string& body) {
    out << "Content-Length: " << body.size() << "\r\n\r\n" << body;
    out.flush();
}

}  // namespace zentu_cmd::lsp
