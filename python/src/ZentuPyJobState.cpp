#include "ZentuPyJobState.h"

#include <pybind11/pybind11.h>

#include "ZentuPyErrors.h"

namespace py = pybind11;

ZentuJobState::ZentuJobState(ZentuSchemaHandle schema, ZentuCompletion completion,
                             ZentuReading reading)
    : schema_(std::move(schema)), completion_(completion), reading_(std::move(reading)) {}

std::shared_ptr<ZentuJobState> ZentuJobState::Read(const std::string& path,
                                                   ZentuSchemaHandle schema,
                                                   ZentuCompletion completion) {
    ZentuReading reading;
    {
        const py::gil_scoped_release released;
        reading = std::make_shared<const ZentuTypedJob>(
            ZentuTypedJob::ReadFile(path, *schema, completion));
    }
    throw_first_error(path, reading->Findings());
    return std::make_shared<ZentuJobState>(std::move(schema), completion, std::move(reading));
}

ZentuReading ZentuJobState::ReadAgain(std::string text, ZentuCompletion completion) const {
    const py::gil_scoped_release released;
    return std::make_shared<const ZentuTypedJob>(ZentuTypedJob::ReadText(
        std::move(text), reading_->Document().Path(), *schema_, completion));
}

void ZentuJobState::Apply(const ZentuTextSplice& edit) {
    ZentuReading edited =
        ReadAgain(ZentuJobEdits::apply(reading_->Document().Text(), edit), completion_);
    throw_first_error(edited->Document().Path(), ZentuJobEdits::refusals(*edited, edit));
    reading_ = std::move(edited);
}

void ZentuJobState::RemoveCommand(std::size_t index) {
    Apply(ZentuJobEdits::remove_command(reading_->Document(), index));
    removed_.push_back(index);
}

void ZentuJobState::Complete() {
    ZentuReading completed = ReadAgain(reading_->Document().Text(), ZentuCompletion::FULL);
    throw_first_error(completed->Document().Path(), completed->Findings());
    completion_ = ZentuCompletion::FULL;
    reading_ = std::move(completed);
}

std::optional<std::size_t> ZentuJobState::Follow(std::size_t index, std::size_t removals) const {
    for (std::size_t next = removals; next < removed_.size(); ++next) {
        if (removed_[next] == index) {
            return std::nullopt;
        }
        index -= removed_[next] < index ? 1 : 0;
    }
    return index;
}
