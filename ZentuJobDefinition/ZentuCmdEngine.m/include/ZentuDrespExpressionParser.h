#pragma once

#include <vector>

#include "ZentuCmd.h"
#include "ZentuCmdContainer.h"
#include "ZentuCmdEngineExport.h"
#include "ZentuCmdItemDefs.h"
#include "ZentuMathExpressions.h"

namespace ZentuDrespExpressionParser {

// Expands the expression held by the first ADD_FILE item of every OPERATOR command into a
// weighted combination: a TYPE "COMBINE" item and, per term, a "VARIABLE" reference with a
// "WEIGHT" real; groups multiplied by a number become generated OPERATOR commands. References
// are written %ID_NAME% and name DRESP or OPERATOR commands. Register it as a container rule.
ZENTU_CMD_ENGINE_API void dresp_expression_rule(ZentuCmdContainer& container,
                                                const ZentuCmdItemDefs::KeywordMap& keywords);

// The token descriptions with which dresp_expression_rule reads the expressions of container:
// first its references, %ID_NAME% of every DRESP and then every OPERATOR command, matched
// without case, then the default setup. Hosts use it to check an expression before the rule runs.
ZENTU_CMD_ENGINE_API std::vector<ZentuMathExpressions::TokenDescription> create_token_setup(
    const ZentuCmdContainer& container);

// Turns one expression, in postfix order, into the combination items of command, creating the
// generated commands of its groups in container.
ZENTU_CMD_ENGINE_API void find_combine_expressions(
    const std::vector<ZentuMathExpressions::Token>& tokens,
    const ZentuCmdItemDefs::KeywordMap& keywords, ZentuCmdContainer& container, ZentuCmd& command);

}  // namespace ZentuDrespExpressionParser
