#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "ZentuFinding.h"
#include "ZentuJobDocumentExport.h"

class ZentuCmd;
class ZentuJobDocument;
class ZentuTypedJob;

// One change of a job file's text by bytes: the bytes [begin, end) give way to text. The edits
// below replace whole lines, so that text is empty or ends with a line feed.
struct ZentuTextSplice {
    std::size_t begin = 0;
    std::size_t end = 0;
    std::string text;
};

// Changes of a job file that keep everything else as written, comments and layout included:
// each is a splice of the text computed from the document's places, after which the caller reads
// the text again. Commands are named by their index in the document's Commands().
namespace ZentuJobEdits {

// The text with the edit made.
ZENTU_JOB_DOCUMENT_API std::string apply(const std::string& text, const ZentuTextSplice& edit);

// Gives the first item of the command named name (in any case) the value, in its place, with its
// name as written and its indentation; adds the item before the command's END_ when it has none.
// A value of several lines is written with the name alone on its line. Throws KPL_Failure for a
// name that would not read back as one (empty, with blanks or '=', or beginning with '#').
ZENTU_JOB_DOCUMENT_API ZentuTextSplice set_item(const ZentuJobDocument& document,
                                                std::size_t command, const std::string& name,
                                                const std::string& value);

// Removes the lines of the first item of the command named name (in any case); nothing when the
// command has no such item.
ZENTU_JOB_DOCUMENT_API std::optional<ZentuTextSplice> remove_item(const ZentuJobDocument& document,
                                                                  std::size_t command,
                                                                  const std::string& name);

// Appends a command of the keyword after the last line, with an ID_NAME item unless the
// identifier is empty.
ZENTU_JOB_DOCUMENT_API ZentuTextSplice add_command(const ZentuJobDocument& document,
                                                   const std::string& keyword,
                                                   const std::string& identifier);

// Removes the lines of the command, from its keyword to its END_, and the empty line after it, or
// before it at the end of the file.
ZENTU_JOB_DOCUMENT_API ZentuTextSplice remove_command(const ZentuJobDocument& document,
                                                      std::size_t command);

// The document command that writes a command of the typed job; none for a default command or
// one that a rule generated, which have no text to edit.
ZENTU_JOB_DOCUMENT_API std::optional<std::size_t> written_command(const ZentuTypedJob& job,
                                                                  const ZentuCmd& command);

// The command of the typed job that the document command writes; null when it gives none.
ZENTU_JOB_DOCUMENT_API const ZentuCmd* command_written_at(const ZentuTypedJob& job,
                                                          std::size_t index);

// The findings of the job read from the edited text for which the edit is refused: errors on
// the lines that the edit wrote, but for missing items, and errors about the structure of the
// file anywhere.
ZENTU_JOB_DOCUMENT_API std::vector<ZentuFinding> refusals(const ZentuTypedJob& edited,
                                                          const ZentuTextSplice& edit);

}  // namespace ZentuJobEdits
