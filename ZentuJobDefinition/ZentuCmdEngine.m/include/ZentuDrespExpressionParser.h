#pragma once

#include <functional>
#include <vector>

#include "ZentuCmd.h"
#include "ZentuCmdContainer.h"
#include "ZentuCmdEngineExport.h"
#include "ZentuCmdItemDefs.h"
#include "ZentuMathExpressions.h"

class KPL_Exception;

namespace ZentuDrespExpressionParser {

// Expands the expression held by the first ADD_FILE item of every OPERATOR command into a
// weighted combination: a TYPE "COMBINE" item and, per term, a "VARIABLE" reference with a
// "WEIGHT" real; groups multiplied by a number become generated OPERATOR commands. References
// are written %ID_NAME% and name DRESP or OPERATOR commands. Register it as a container rule.
ZENTU_CMD_ENGINE_API void dresp_expression_rule(ZentuCmdContainer& container,
                                                const ZentuCmdItemDefs::KeywordMap& keywords);

// While one lives on a thread, dresp_expression_rule on that thread hands each expression whose
// text it cannot read to the handler and erases it, where it would otherwise fail, and goes on
// with the next; a front end that reports every problem of a file so has the sound expressions
// expanded without reading any expression twice. The innermost of nested ones handles.
class ZENTU_CMD_ENGINE_API UnreadableExpressions {
  public:
    // Receives the command, its expression item, still in place, and the tokenizer's refusal.
    using Handler = std::function<void(const ZentuCmd& command, const ZentuCmdItem& expression,
                                       const KPL_Exception& refusal)>;

    // Hands the unreadable expressions of this thread's rule runs to handler from now on.
    explicit UnreadableExpressions(Handler handler);
    // Gives the handling back to the enclosing one, if any.
    ~UnreadableExpressions();
    UnreadableExpressions(const UnreadableExpressions&) = delete;
    UnreadableExpressions& operator=(const UnreadableExpressions&) = delete;

    // Whether dresp_expression_rule has started on this thread since this one was made.
    bool RuleRan() const { return ruleRan_; }

  private:
    friend void dresp_expression_rule(ZentuCmdContainer& container,
                                      const ZentuCmdItemDefs::KeywordMap& keywords);

    // The innermost one of this thread, or null.
    static UnreadableExpressions* Current();

    Handler handler_;
    UnreadableExpressions* enclosing_;
    bool ruleRan_ = false;
};

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
