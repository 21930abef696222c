#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "ZentuJobEdits.h"
#include "ZentuPySchema.h"
#include "ZentuTypedJob.h"

// A reading of a job that commands and items taken from it keep alive, so that they stay valid
// after the job is edited.
using ZentuReading = std::shared_ptr<const ZentuTypedJob>;

// What a job and the commands taken from it share: the schema it is read with, how it is
// completed, and its latest reading, which every edit replaces.
class ZentuJobState {
  public:
    ZentuJobState(ZentuSchemaHandle schema, ZentuCompletion completion, ZentuReading reading);

    // Reads a file with the GIL released; raises zentu.Error for a file with errors.
    static std::shared_ptr<ZentuJobState> Read(const std::string& path, ZentuSchemaHandle schema,
                                               ZentuCompletion completion);

    const ZentuReading& Reading() const { return reading_; }
    const ZentuJobSchema& Schema() const { return *schema_; }
    // Makes the edit in the text and reads it again; raises zentu.Error and keeps the job as it
    // was when the edit brings errors on the lines it writes or breaks the file's structure.
    void Apply(const ZentuTextSplice& edit);
    // Applies the edit that removes document command index and remembers it, so that commands
    // taken before can follow.
    void RemoveCommand(std::size_t index);
    // Completes the job from now on by the schema's rules; raises zentu.Error when that brings
    // errors.
    void Complete();
    // The place in the document after every removal since a command was taken at removals; none
    // when the command itself was removed.
    std::optional<std::size_t> Follow(std::size_t index, std::size_t removals) const;
    // How many commands were removed so far.
    std::size_t Removals() const { return removed_.size(); }

  private:
    // The text read again with the job's schema, completed as asked, with the GIL released.
    ZentuReading ReadAgain(std::string text, ZentuCompletion completion) const;

    ZentuSchemaHandle schema_;
    ZentuCompletion completion_;
    ZentuReading reading_;
    std::vector<std::size_t> removed_;
};
