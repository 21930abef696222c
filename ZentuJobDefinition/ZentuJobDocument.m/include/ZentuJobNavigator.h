#pragma once

#include <optional>
#include <string>
#include <vector>

#include "ZentuFinding.h"
#include "ZentuIdentifierUse.h"
#include "ZentuJobDocumentExport.h"
#include "ZentuTextEdit.h"

class ZentuJobSchema;
class ZentuTypedJob;

// Finds one's way through a job read with its schema: what is written at a place, the command
// that a reference or expression term names, every place that names a command, and the edits
// that rename it. Editors and scripts ask it with positions in the file; it holds references to
// the job and the schema, which must outlive it.
class ZENTU_JOB_DOCUMENT_API ZentuJobNavigator {
  public:
    ZentuJobNavigator(const ZentuTypedJob& job, const ZentuJobSchema& schema);

    const ZentuTypedJob& Job() const { return job_; }
    const ZentuJobSchema& Schema() const { return schema_; }
    // Every place that writes an identifier, in file order.
    const std::vector<ZentuIdentifierUse>& Uses() const { return uses_; }

    // The identifier written at the position, or null.
    const ZentuIdentifierUse* UseAt(const ZentuTextPosition& position) const;
    // The place where the command that a use names gives its identifier (a definition names
    // itself), preferring a command of the kind referred to; null when no command has it.
    const ZentuIdentifierUse* DefinitionOf(const ZentuIdentifierUse& use) const;
    // Every place that writes the identifier (in any case), in file order.
    std::vector<const ZentuIdentifierUse*> UsesOf(const std::string& identifier) const;
    // The edits that give the identifier at the position the new name everywhere it is written;
    // nothing when no identifier is there or the new name cannot be an identifier.
    std::optional<std::vector<ZentuTextEdit>> Rename(const ZentuTextPosition& position,
                                                     const std::string& newName) const;

    // Whether a text can be an identifier: one word without the marks that the file syntax and
    // expressions give meaning.
    static bool IsIdentifier(const std::string& text);

  private:
    const ZentuTypedJob& job_;
    const ZentuJobSchema& schema_;
    std::vector<ZentuIdentifierUse> uses_;
};
