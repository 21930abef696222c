#pragma once

#include <cstddef>
#include <functional>
#include <vector>

#include "ZentuCmdContainerRules.h"
#include "ZentuCmdItemDefs.h"
#include "ZentuJobDocumentExport.h"

class ZentuCmd;
class ZentuCmdContainer;
class ZentuCmdMetaData;

// Rules whose parameters are chosen at run time (by a schema file), made callable through the
// plain function pointers that a ZentuCmdIoConfig holds.
//
// Each bound rule gets the function of its position: a plain function that calls the rule bound
// at that position in the set that is active on the calling thread. A set is active for the
// lifetime of a Scope, typically one read, so that any number of sets live side by side, reads
// on several threads never see each other's rules, and a set is freed like any other object.
class ZENTU_JOB_DOCUMENT_API ZentuBoundRules {
  public:
    // The body of a per-command rule with its parameters bound.
    using CommandRule =
        std::function<void(ZentuCmd&, const ZentuCmdContainer&, const ZentuCmdMetaData&,
                           const ZentuCmdItemDefs::KeywordMap&)>;
    // The body of a container rule with its parameters bound.
    using ContainerRule =
        std::function<void(ZentuCmdContainer&, const ZentuCmdItemDefs::KeywordMap&)>;

    // The most rules of each type that one set binds.
    static constexpr std::size_t MAX_RULES = 256;

    // Binds a per-command rule; returns the function that runs it while this set is active.
    // Throws KPL_Failure when the set already holds MAX_RULES per-command rules.
    ZentuCmdContainerRules::DefaultValueRuleFunction Bind(CommandRule rule);
    // Binds a container rule; returns the function that runs it while this set is active.
    // Throws KPL_Failure when the set already holds MAX_RULES container rules.
    ZentuCmdContainerRules::ContainerManipulatorRule Bind(ContainerRule rule);

    // Makes a set the one that bound functions call on this thread, until the scope ends; scopes
    // nest, and the set active before comes back at the end.
    class ZENTU_JOB_DOCUMENT_API Scope {
      public:
        // Activates rules on the calling thread.
        explicit Scope(const ZentuBoundRules& rules);
        // Restores the set that was active before.
        ~Scope();
        Scope(const Scope&) = delete;
        Scope& operator=(const Scope&) = delete;

      private:
        const ZentuBoundRules* previous_;
    };

    // The per-command rule at a position of the set active on this thread; throws KPL_Failure
    // when no set is active or it binds nothing there.
    static const CommandRule& ActiveCommandRule(std::size_t position);
    // The container rule at a position of the set active on this thread; throws as above.
    static const ContainerRule& ActiveContainerRule(std::size_t position);

  private:
    std::vector<CommandRule> commandRules_;
    std::vector<ContainerRule> containerRules_;
};
