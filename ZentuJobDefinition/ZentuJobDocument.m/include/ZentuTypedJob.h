#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "ZentuCmdContainer.h"
#include "ZentuFinding.h"
#include "ZentuJobChecks.h"
#include "ZentuJobDocument.h"
#include "ZentuJobDocumentExport.h"
#include "ZentuJobSchema.h"
#include "ZentuPointerTable.h"

class ZentuCmd;
class ZentuCmdItem;

// Where a command or item of a typed job comes from in its document: indices into Commands()
// and the command's items, NONE where there is none.
struct ZentuOrigin {
    static constexpr std::size_t NONE = static_cast<std::size_t>(-1);
    std::size_t command = NONE;
    std::size_t item = NONE;
};

// Origins by the address of the command or item they belong to.
using ZentuOriginTable = ZentuPointerTable<ZentuOrigin>;

// A job file read into the library's container with a schema, on the document: the same
// commands and items that ZentuParFileAdapter::Parse gives for a file without errors, completed
// as asked, each traced to the place in the file it comes from, with every problem of reading,
// typing and completing as a located finding. Reading goes on past every problem: a refused
// value is left out of the container and reported, as is an expression that does not read.
class ZENTU_JOB_DOCUMENT_API ZentuTypedJob {
  public:
    // Reads a file (path in UTF-8) with the schema; inside a command, a name alone that is one of
    // the schema's command keywords and no item of the open command starts the next command.
    static ZentuTypedJob ReadFile(const std::string& path, const ZentuJobSchema& schema,
                                  ZentuCompletion completion);
    // Reads a text as ReadFile reads a file; path names it in findings.
    static ZentuTypedJob ReadText(std::string text, const std::string& path,
                                  const ZentuJobSchema& schema, ZentuCompletion completion);
    // The keyword test that ReadFile and ReadText give the document.
    static ZentuJobDocument::KeywordTest KeywordTestOf(const ZentuJobSchema& schema);

    // Types and completes a document with the schema.
    ZentuTypedJob(ZentuJobDocument document, const ZentuJobSchema& schema,
                  ZentuCompletion completion);

    // The document as read.
    const ZentuJobDocument& Document() const { return document_; }
    // The typed, completed job.
    const ZentuCmdContainer& Container() const { return container_; }
    ZentuCmdContainer& Container() { return container_; }
    // Every finding, the document's included, in file order.
    const std::vector<ZentuFinding>& Findings() const { return findings_; }
    // Whether a finding is an error.
    bool HasErrors() const;
    // Gives the findings of each overridden code its new severity, or drops them.
    void OverrideSeverities(const std::vector<ZentuJobChecks::SeverityOverride>& overrides);
    // The number of reference items of the file that name a command, and that name none.
    std::size_t ResolvedReferences() const { return resolved_; }
    std::size_t UnresolvedReferences() const { return unresolved_; }

    // Where a command comes from: its document command; for a command that a rule generated,
    // the command (and item) that refers to it; nothing for a default command.
    ZentuOrigin OriginOf(const ZentuCmd& command) const;
    // Where an item of the command comes from: its document item; for an item that a default or
    // a rule added, only its command's origin.
    ZentuOrigin OriginOf(const ZentuCmd& command, const ZentuCmdItem& item) const;
    // The same for an item of a command whose origin, OriginOf(command), is known: walking all
    // items of a job then looks each command up once.
    ZentuOrigin ItemOriginOf(const ZentuOrigin& commandOrigin, const ZentuCmdItem& item) const;

  private:
    friend class ZentuTypedJobReader;

    ZentuJobDocument document_;
    ZentuCmdContainer container_;
    std::vector<ZentuFinding> findings_;
    // An item read from the file, its index among its document command's items, and whether it
    // refers to a command.
    struct ReadItem {
        const ZentuCmdItem* item = nullptr;
        std::size_t index = 0;
        bool reference = false;
    };

    // The entry of an item of a command of the origin that was read from the file and is still
    // there; null for any other item.
    const ReadItem* FindReadItem(const ZentuOrigin& commandOrigin, const ZentuCmdItem& item) const;

    ZentuOriginTable commandOrigins_;
    // The items read from the file, document command by document command: an item's origin is
    // found among the few of its command, in a table that walking a job reads in order, instead
    // of in a table keyed by every item's address, where a big job misses the cache at each look.
    std::vector<ReadItem> readItems_;
    // Where the read items of document command c begin in readItems_, and one entry past the last.
    std::vector<std::size_t> firstReadItems_;
    std::size_t resolved_ = 0;
    std::size_t unresolved_ = 0;
};
