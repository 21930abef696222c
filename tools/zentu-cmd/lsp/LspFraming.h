#pragma once

#include <iosfwd>
#include <string>

namespace zentu_cmd::lsp {

// One message as the base protocol frames it on a stream: headers, an empty line, and a body of
// Content-Length bytes.
struct Frame {
    enum class Status {
        // A body was read.
        MESSAGE,
        // The headers had no usable Content-Length; the headers were skipped.
        MALFORMED,
        // The stream ended.
        END
    };

    Status status = Status::END;
    std::string body;
};

// Reads the next message from the stream.
Frame read_frame(std::istream& in);

// Writes one message body with its header and flushes, so that the client sees it at once.
void write_frame(std::ostream& out, const std::string& body);

}  // namespace zentu_cmd::lsp
