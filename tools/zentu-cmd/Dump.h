#pragma once

#include <nlohmann/json.hpp>

#include "ZentuCmdContainer.h"

namespace zentu_cmd {

// The container as JSON for scripts: commands in container order with kind, name and identifier,
// and their items with name, kind, text, every typed reading they have, and the identifier of
// the command they refer to.
nlohmann::ordered_json dump_container(const ZentuCmdContainer& container);

}  // namespace zentu_cmd
