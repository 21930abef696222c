#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "ZentuCmdDefs.h"
#include "ZentuJobDocumentExport.h"

class ZentuCmd;
class ZentuJobSchema;
class ZentuTypedJob;

// Who refers to whom in a completed job: commands as nodes, references (items, elements of
// lists of references, the terms that expressions expanded into) as edges. The check for unused
// commands, the check for reference cycles and the picture of a job all read this one graph.
class ZENTU_JOB_DOCUMENT_API ZentuReferenceGraph {
  public:
    // One command of the job.
    struct Node {
        const ZentuCmd* command = nullptr;
        ZentuCmdDefs::Cmd kind = ZentuCmdDefs::Cmd::CMD_PLACEHOLDER;
        std::string keyword;
        std::string identifier;
        // The line in the file it comes from (for a generated command, what generated it); 0 if
        // none.
        std::size_t line = 0;
        // Read from the file, not made by defaults or rules.
        bool fromFile = false;
        // Something else refers to it.
        bool used = false;
    };

    // One reference: from the referring command to the referred one, with the name of the item
    // that refers (owned by the item), and the weight of an expanded term.
    struct Edge {
        std::size_t from = 0;
        std::size_t to = 0;
        const std::string* name = nullptr;
        std::optional<double> weight;
    };

    // Builds the graph of a completed job; the schema tells which lists hold references.
    ZentuReferenceGraph(const ZentuTypedJob& job, const ZentuJobSchema& schema);

    const std::vector<Node>& Nodes() const { return nodes_; }
    const std::vector<Edge>& Edges() const { return edges_; }
    // Each cycle of references among operators, as the nodes along it, first node again last.
    std::vector<std::vector<std::size_t>> OperatorCycles() const;
    // The graph in Graphviz's DOT language: nodes grouped and coloured by kind, weights on the
    // edges of expanded terms, unused commands dashed.
    std::string ToDot() const;

  private:
    // The nodes by identifier, made when a list of references first needs them.
    class IdentifierIndex;

    // Adds an edge for each element of the command's lists of references that names a command.
    void AddListEdges(const ZentuCmd& command, std::size_t from, const ZentuJobSchema& schema,
                      IdentifierIndex& byIdentifier);

    std::vector<Node> nodes_;
    std::vector<Edge> edges_;
};
