#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>

#include "ZentuJobCompletion.h"
#include "ZentuJobHover.h"
#include "ZentuJobNavigator.h"
#include "ZentuJobOutline.h"
#include "ZentuJobSchema.h"
#include "ZentuTypedJob.h"
#include "document_ranges.h"
#include "fuzz_support.h"

namespace {

// Positions are tried on this many lines and columns, so that one input stays quick.
constexpr std::size_t MAX_PLACES = 48;

const ZentuJobSchema& Schema() {
    static const ZentuJobSchema schema = ZentuJobSchema::Builtin();
    return schema;
}

// What an editor asks at one position: every answer lies inside the text, a definition gives
// the identifier that it was asked for, and a rename edits every place of the identifier.
void AskAt(const ZentuJobNavigator& navigator, const ZentuTextPosition& position) {
    const ZentuJobDocument& document = navigator.Job().Document();
    static_cast<void>(zentu_completions(navigator, position));
    if (const auto hover = zentu_hover(navigator, position)) {
        zentu_fuzz::RequireInside(document, hover->range, "a hover's range lies inside the text");
    }
    const ZentuIdentifierUse* use = navigator.UseAt(position);
    if (use == nullptr) {
        zentu_fuzz::Require(!navigator.Rename(position, "R"), "only identifiers are renamed");
        return;
    }
    const ZentuIdentifierUse* definition = navigator.DefinitionOf(*use);
    zentu_fuzz::Require(definition == nullptr || definition->identifier == use->identifier,
                        "a definition gives the identifier asked for");
    const auto edits = navigator.Rename(position, "R");
    zentu_fuzz::Require(edits && edits->size() == navigator.UsesOf(use->identifier).size(),
                        "a rename edits every place of the identifier");
}

void RequireOutlineInside(const ZentuJobDocument& document) {
    for (const ZentuOutlineEntry& command : zentu_outline(document)) {
        zentu_fuzz::RequireInside(document, command.range, "a command's outline lies inside");
        for (const ZentuOutlineEntry& item : command.children) {
            zentu_fuzz::RequireInside(document, item.range, "an item's outline lies inside");
        }
    }
}

}  // namespace

// Runs once before the first input, so that every input meets the same library setup.
extern "C" int LLVMFuzzerInitialize(int*, char***) {
    zentu_fuzz::PrepareLibrary();
    static_cast<void>(Schema());
    return 0;
}

// libFuzzer's entry point: the bytes as a job open in an editor, asked about at every place.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const ZentuTypedJob job = ZentuTypedJob::ReadText(zentu_fuzz::TextOf(data, size), "fuzz.par",
                                                      Schema(), ZentuCompletion::FULL);
    const ZentuJobNavigator navigator(job, Schema());
    const ZentuJobDocument& document = job.Document();
    for (const ZentuIdentifierUse& use : navigator.Uses()) {
        zentu_fuzz::RequireInside(document, use.range, "an identifier lies inside the text");
    }
    RequireOutlineInside(document);
    const std::size_t lines = std::min(document.LineCount() + 1, MAX_PLACES);
    for (std::size_t line = 1; line <= lines; ++line) {
        const std::size_t columns =
            std::min(zentu_fuzz::LastColumn(document, line) + 1, MAX_PLACES);
        for (std::size_t column = 1; column <= columns; ++column) {
            AskAt(navigator, {line, column});
        }
    }
    return 0;
}
