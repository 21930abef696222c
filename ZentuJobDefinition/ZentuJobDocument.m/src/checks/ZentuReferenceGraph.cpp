#include "ZentuReferenceGraph.h"

#include <algorithm>
#include <array>
#include <optional>
#include <sstream>
#include <string_view>

#include "ZentuCmd.h"
#include "ZentuCmdIdentifier.h"
#include "ZentuCmdItem.h"
#include "ZentuJobSchema.h"
#include "ZentuPointerTable.h"
#include "ZentuStringUtil.h"
#include "ZentuTypedJob.h"
#include "checks/ZentuTextTable.h"
#include "document/ZentuCommandItems.h"
#include "schema/ZentuSchemaLookup.h"

using ZentuCmdDefs::Cmd;
using ZentuCmdItemDefs::CmdItem;
using ZentuCmdItemDefs::DataType;

namespace {

// The item an expansion gives each term, and the weight item that goes with it by position.
constexpr std::string_view TERM_ITEM = "VARIABLE";
constexpr std::string_view WEIGHT_ITEM = "WEIGHT";

// Fill colours of the kinds, a light palette that keeps black text readable.
constexpr std::array<const char*, 8> KIND_COLOURS = {"#dbe9f6", "#fde2c8", "#d9f0d3", "#f6d5e5",
                                                     "#e8e0f5", "#fff3bf", "#d7f2f0", "#eeeeee"};

// The weights that go with the expanded terms of a command, in order.
std::vector<double> term_weights(const ZentuCmd& command) {
    std::vector<double> weights;
    for (const auto& item : command.GetItemRange(CmdItem::OBJ_FUNC)) {
        if (item->GetName() == WEIGHT_ITEM && item->HasReal()) {
            weights.push_back(item->GetReal());
        }
    }
    return weights;
}

// A text as a DOT string: quotes and backslashes escaped, line feeds as DOT's line breaks.
std::string dot_string(const std::string& text) {
    std::string result = "\"";
    for (const char c : text) {
        if (c == '\n') {
            result += "\\n";
            continue;
        }
        if (c == '"' || c == '\\') {
            result += '\\';
        }
        result += c;
    }
    return result + "\"";
}

}  // namespace

// The nodes by identifier, the first node of each, indexed when a list of references first needs
// them; the nodes must not change after.
class ZentuReferenceGraph::IdentifierIndex {
  public:
    explicit IdentifierIndex(const std::vector<Node>& nodes) : nodes_(nodes) {}

    // The first node of the identifier, or null.
    const std::size_t* Find(std::string_view identifier) {
        if (!byIdentifier_) {
            byIdentifier_.emplace(nodes_.size());
            for (std::size_t n = 0; n < nodes_.size(); ++n) {
                byIdentifier_->Insert(nodes_[n].identifier, n);
            }
        }
        return byIdentifier_->Find(identifier);
    }

  private:
    const std::vector<Node>& nodes_;
    std::optional<ZentuTextTable<std::size_t>> byIdentifier_;
};

ZentuReferenceGraph::ZentuReferenceGraph(const ZentuTypedJob& job, const ZentuJobSchema& schema) {
    // Room for every command at once: growing would move every node made so far.
    const std::size_t count = zentu_command_count(job.Container());
    ZentuPointerTable<std::size_t> index;
    index.Reserve(count);
    nodes_.reserve(count);
    // Most commands refer to one or two others: room for one each spares most of the moves.
    edges_.reserve(count);
    for (const ZentuCmd& command : job.Container()) {
        const ZentuOrigin origin = job.OriginOf(command);
        Node node;
        node.command = &command;
        node.kind = command.GetType();
        node.keyword = command.GetName();
        node.identifier = ZentuCmdIdentifier::text_of(command);
        if (origin.command != ZentuOrigin::NONE) {
            const ZentuDocumentCommand& read = job.Document().Commands()[origin.command];
            node.line = read.line;
            node.fromFile = read.keyword == command.GetName() && origin.item == ZentuOrigin::NONE;
        }
        index.Insert(&command, nodes_.size());
        nodes_.push_back(std::move(node));
    }
    IdentifierIndex byIdentifier(nodes_);
    for (std::size_t from = 0; from < nodes_.size(); ++from) {
        const ZentuCmd& command = *nodes_[from].command;
        const std::vector<double> weights = term_weights(command);
        std::size_t term = 0;
        zentu_for_each_item(command, [&](const ZentuCmdItem& item) {
            const ZentuCmd* target = item.HasReference() ? item.GetReference() : nullptr;
            const std::size_t* to = target == nullptr ? nullptr : index.Find(target);
            if (to == nullptr || target == &command) {
                return;
            }
            Edge edge{from, *to, &item.GetName(), std::nullopt};
            if (item.GetName() == TERM_ITEM && term < weights.size()) {
                edge.weight = weights[term++];
            }
            edges_.push_back(edge);
        });
        AddListEdges(command, from, schema, byIdentifier);
    }
    for (const Edge& edge : edges_) {
        nodes_[edge.to].used = true;
    }
}

void ZentuReferenceGraph::AddListEdges(const ZentuCmd& command, std::size_t from,
                                       const ZentuJobSchema& schema,
                                       IdentifierIndex& byIdentifier) {
    const ZentuCommandSchema* described =
        ZentuSchemaLookup::find_command(schema, command.GetName());
    if (described == nullptr) {
        return;
    }
    for (const ZentuItemSchema& description : described->items) {
        if (description.type != DataType::LIST || description.references == Cmd::CMD_PLACEHOLDER) {
            continue;
        }
        for (const auto& item : command.GetItemRange(description.kind)) {
            std::vector<std::string> elements;
            ZentuStringUtil::Split(item->GetString(), ",", elements);
            for (std::string& element : elements) {
                ZentuStringUtil::Trim(element);
                const std::size_t* target = byIdentifier.Find(ZentuStringUtil::to_upper(element));
                if (target != nullptr && *target != from) {
                    edges_.push_back({from, *target, &item->GetName(), std::nullopt});
                }
            }
        }
    }
}

std::vector<std::vector<std::size_t>> ZentuReferenceGraph::OperatorCycles() const {
    const auto between_operators = [this](const Edge& edge) {
        return nodes_[edge.from].kind == Cmd::OPERATOR && nodes_[edge.to].kind == Cmd::OPERATOR;
    };
    // The references between operators in one sequence, those of node n, in the order of the
    // edges, from first[n] to first[n + 1]: one allocation instead of one per node.
    std::vector<std::size_t> first(nodes_.size() + 1, 0);
    for (const Edge& edge : edges_) {
        first[edge.from + 1] += between_operators(edge) ? 1 : 0;
    }
    for (std::size_t n = 0; n < nodes_.size(); ++n) {
        first[n + 1] += first[n];
    }
    std::vector<std::size_t> next(first.back());
    std::vector<std::size_t> filled(first.begin(), first.end() - 1);
    for (const Edge& edge : edges_) {
        if (between_operators(edge)) {
            next[filled[edge.from]++] = edge.to;
        }
    }
    // Depth-first search without recursion, so that a long chain of operators nests nothing.
    enum class State { NEW, ON_PATH, DONE };
    std::vector<State> state(nodes_.size(), State::NEW);
    std::vector<std::vector<std::size_t>> cycles;
    for (std::size_t start = 0; start < nodes_.size(); ++start) {
        if (state[start] != State::NEW || nodes_[start].kind != Cmd::OPERATOR) {
            continue;
        }
        std::vector<std::pair<std::size_t, std::size_t>> path = {{start, first[start]}};
        state[start] = State::ON_PATH;
        while (!path.empty()) {
            auto& [node, edge] = path.back();
            if (edge == first[node + 1]) {
                state[node] = State::DONE;
                path.pop_back();
                continue;
            }
            const std::size_t target = next[edge++];
            if (state[target] == State::ON_PATH) {
                std::vector<std::size_t> cycle;
                auto begin = std::find_if(path.begin(), path.end(),
                                          [&](const auto& step) { return step.first == target; });
                for (; begin != path.end(); ++begin) {
                    cycle.push_back(begin->first);
                }
                cycle.push_back(target);
                cycles.push_back(std::move(cycle));
            } else if (state[target] == State::NEW) {
                state[target] = State::ON_PATH;
                path.emplace_back(target, first[target]);
            }
        }
    }
    return cycles;
}

std::string ZentuReferenceGraph::ToDot() const {
    std::ostringstream dot;
    dot << "digraph job {\n  rankdir=LR;\n  graph [fontname=\"Helvetica\"];\n  node [shape=box, "
           "style=\"rounded,filled\", "
           "fontname=\"Helvetica\"];\n  edge [fontname=\"Helvetica\", fontsize=10];\n";
    for (std::size_t kind = 0; kind < ZentuCmdDefs::CMD_KIND_COUNT; ++kind) {
        std::ostringstream members;
        for (std::size_t n = 0; n < nodes_.size(); ++n) {
            const Node& node = nodes_[n];
            if (static_cast<std::size_t>(node.kind) != kind) {
                continue;
            }
            std::string label = node.identifier.empty() ? node.keyword : node.identifier;
            if (node.line != 0) {
                label += "\nline " + std::to_string(node.line);
            }
            members << "    n" << n << " [label=" << dot_string(label) << ", fillcolor=\""
                    << KIND_COLOURS[kind % KIND_COLOURS.size()] << "\""
                    << (node.fromFile && !node.used &&
                                (node.kind == Cmd::DRESP || node.kind == Cmd::OPERATOR ||
                                 node.kind == Cmd::DV)
                            ? ", style=\"rounded,filled,dashed\", color=\"#c0392b\""
                            : "")
                    << "];\n";
        }
        if (!members.str().empty()) {
            dot << "  subgraph cluster_" << ZentuCmdDefs::CMD_NAMES[kind]
                << " {\n    label=" << dot_string(ZentuCmdDefs::CMD_NAMES[kind])
                << ";\n    style=dashed;\n    color=\"#999999\";\n"
                << members.str() << "  }\n";
        }
    }
    for (const Edge& edge : edges_) {
        const std::string label = edge.weight ? ZentuStringUtil::String(*edge.weight) : *edge.name;
        dot << "  n" << edge.from << " -> n" << edge.to << " [label=" << dot_string(label)
            << "];\n";
    }
    dot << "}\n";
    return dot.str();
}
