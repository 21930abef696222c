#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "ZentuJobDocumentExport.h"

class ZentuTypedJob;
class ZentuJobSchema;

// A value whose text the written file would hold otherwise.
struct ZentuRewrittenText {
    // The line of the item in the file.
    std::size_t line = 0;
    // The value as the file writes it, and as the written file would.
    std::string written;
    std::string rewritten;
};

// What writing a typed job's container in the library writer's layout (the canonical form, and
// what a completed job is written as) would drop or change of the file it was read from, so that
// a front end can refuse to overwrite a file with less than it holds. Letter case, layout and the
// order of commands and items do not count: reading the written file gives the same commands and
// items in those respects.
struct ZENTU_JOB_DOCUMENT_API ZentuCanonicalLosses {
    // The lines of comments: the writer writes none.
    std::vector<std::size_t> comment_lines;
    // The lines of commands that the schema does not describe and that hold items: they are
    // written without them.
    std::vector<std::size_t> undescribed_commands;
    // The lines of items that the schema does not describe in a command it describes.
    std::vector<std::size_t> undescribed_items;
    // Numbers that the writer writes in its own way (0.0005 as 5e-04).
    std::vector<ZentuRewrittenText> rewritten_numbers;
    // The lines of values that the written file would not read back whole: a multi-line value
    // that the writer puts on one line, or one holding a NUL byte, where the writer stops.
    std::vector<std::size_t> cut_values;

    // Compares the job's document with what the writer writes for the job's container.
    static ZentuCanonicalLosses Of(const ZentuTypedJob& job, const ZentuJobSchema& schema);

    // Whether writing loses nothing.
    bool Empty() const;
    // What writing would lose, as the end of a sentence that starts "writing would ", for
    // example "drop 3 comment lines, 1 undescribed item (line 12) and rewrite 2 number texts
    // (line 5: 0.0005 -> 5e-04, line 9: 1.0 -> 1)"; empty when nothing is lost.
    std::string Describe() const;
};
