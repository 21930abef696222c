#include "job_generator.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <stdexcept>
#include <utility>

#include "BreltList.h"
#include "ZentuCmdDefs.h"
#include "ZentuCmdItemDefs.h"
#include "ZentuCmdItemMetaData.h"
#include "ZentuCmdMetaData.h"
#include "ZentuDrespExpressionParser.h"
#include "ZentuStringUtil.h"

namespace ZentuJobGenerator {

namespace {

using ZentuCmdDefs::Cmd;
using ZentuCmdItemDefs::CmdItem;
using ZentuCmdItemDefs::DataType;
using ZentuCmdItemDefs::EnumValue;

// One word that a keyword item accepts; the tables below serve both the text and the schema, so
// that every generated word is one the schema knows.
struct Keyword {
    const char* word;
    EnumValue value;
};

// What a group holds.
constexpr std::array<Keyword, 2> GROUP_TYPES = {
    {{"ELEMENT", EnumValue::ELEMENT}, {"NODE", EnumValue::NODE}}};

// How a design variable changes its group.
constexpr std::array<Keyword, 3> VARIABLE_TYPES = {{{"DENSITY", EnumValue::DENSITY},
                                                    {"LEVELSET", EnumValue::LEVELSET},
                                                    {"NODAL", EnumValue::NODAL}}};

// What a response measures on its group.
constexpr std::array<Keyword, 7> RESPONSE_TYPES = {
    {{"DISP_ABS", EnumValue::DISP_ABS},
     {"DISP_X", EnumValue::DISP_X},
     {"DISP_Y", EnumValue::DISP_Y},
     {"DISP_Z", EnumValue::DISP_Z},
     {"VOLUME", EnumValue::VOLUME},
     {"SIG_MISES", EnumValue::SIG_MISES},
     {"ENERGY_STIFF_MEASURE", EnumValue::ENERGY_STIFF_MEASURE}}};

// On which side a constraint bounds its response.
constexpr std::array<Keyword, 2> CONSTRAINT_TYPES = {
    {{"LESS_EQUAL", EnumValue::LESS_EQUAL}, {"GREATER_EQUAL", EnumValue::GREATER_EQUAL}}};

// The optimisation algorithms.
constexpr std::array<Keyword, 3> STRATEGIES = {
    {{"MMA", EnumValue::MMA}, {"CSA", EnumValue::CSA}, {"OC_DEV", EnumValue::OC_DEV}}};

// What the expression rule makes of an operator; read only when a written job is read back.
constexpr std::array<Keyword, 1> OPERATOR_TYPES = {{{"COMBINE", EnumValue::COMBINE}}};

// Coefficients written before a reference; a term drawn past the table is a plain reference.
constexpr std::array<const char*, 5> COEFFICIENTS = {"2", "0.5", "3", "1.5", "10"};

// The identifiers of the two commands that every job holds once.
constexpr const char* OPTIMIZE_IDENTIFIER = "OPT1";
constexpr const char* STOP_IDENTIFIER = "STOP1";

// How many commands of each kind a job holds; OPTIMIZE and STOP come once each.
struct JobShape {
    std::size_t groups;
    std::size_t variables;
    std::size_t responses;
    std::size_t operators;
    std::size_t constraints;
};

// Fixed shares of the size, at least one of each kind; groups take what is left, which is at
// least one from MIN_COMMAND_COUNT on.
JobShape shape_of(std::size_t commandCount) {
    if (commandCount < MIN_COMMAND_COUNT) {
        throw std::invalid_argument("a generated job needs at least " +
                                    std::to_string(MIN_COMMAND_COUNT) + " commands");
    }
    JobShape shape{};
    shape.variables = std::max<std::size_t>(1, commandCount / 5);
    shape.responses = std::max<std::size_t>(1, commandCount / 4);
    shape.operators = std::max<std::size_t>(1, commandCount * 3 / 20);
    shape.constraints = std::max<std::size_t>(1, commandCount / 10);
    shape.groups =
        commandCount - 2 - shape.variables - shape.responses - shape.operators - shape.constraints;
    return shape;
}

// A number below bound from the generator's raw output, which the standard fixes bit for bit.
std::size_t draw(std::mt19937& random, std::size_t bound) {
    return static_cast<std::size_t>(random()) % bound;
}

// A number from first to first + count - 1.
int draw_between(std::mt19937& random, int first, int count) {
    return first + static_cast<int>(draw(random, static_cast<std::size_t>(count)));
}

// Identifiers are a letter and a number from 1, as people number commands.
std::string identifier(char letter, std::size_t index) {
    return letter + std::to_string(index + 1);
}

// One of the words of choices.
template <std::size_t N>
const char* draw_word(std::mt19937& random, const std::array<Keyword, N>& choices) {
    return choices[draw(random, N)].word;
}

// A group's members as single values, runs and stepped runs; most groups have a few pieces on
// one line, one in five enough of them for the list to be written on several lines.
BreltList<int> group_members(std::mt19937& random) {
    const int pieces =
        draw(random, 5) == 0 ? draw_between(random, 20, 40) : draw_between(random, 1, 6);
    BreltList<int> members;
    int next = draw_between(random, 1, 1000);
    for (int piece = 0; piece < pieces; ++piece) {
        const int length = draw(random, 3) == 0 ? 1 : draw_between(random, 3, 20);
        const int step = draw(random, 2) == 0 ? 1 : draw_between(random, 2, 4);
        for (int value = 0; value < length; ++value) {
            members.Insert(next);
            next += step;
        }
        next += draw_between(random, 2, 10);
    }
    return members;
}

// Appends commands in parameter-file syntax.
class JobText {
  public:
    // Starts a command.
    void Open(const char* keyword) {
        text_ += keyword;
        text_ += '\n';
    }

    // Writes NAME = value, or, for a value that spans lines, the name alone followed by the
    // value's lines, which is how the reader takes multi-line values.
    void Item(const char* name, const std::string& value) {
        text_ += "  ";
        text_ += name;
        if (value.find('\n') == std::string::npos) {
            text_ += " = ";
            text_ += value;
            text_ += '\n';
            return;
        }
        text_ += '\n';
        std::size_t begin = 0;
        while (begin < value.size()) {
            const std::size_t end = std::min(value.find('\n', begin), value.size());
            text_ += "    ";
            text_.append(value, begin, end - begin);
            text_ += '\n';
            begin = end + 1;
        }
    }

    // Ends a command, with the blank line that separates commands.
    void Close() { text_ += "END_\n\n"; }

    // Appends a comment line.
    void Comment(const std::string& comment) { text_ += "# " + comment + "\n\n"; }

    // The text, which this object gives up.
    std::string Take() { return std::move(text_); }

  private:
    std::string text_;
};

// Writes the commands of one job, drawing every choice from one generator in a fixed order.
class JobBuilder {
  public:
    JobBuilder(std::size_t commandCount, std::uint32_t seed)
        : commandCount_(commandCount), shape_(shape_of(commandCount)), random_(seed) {}

    // The whole job, kind after kind.
    std::string Build() {
        text_.Comment("A generated job of " + std::to_string(commandCount_) + " commands.");
        AddEach(shape_.groups, &JobBuilder::AddGroup);
        AddEach(shape_.variables, &JobBuilder::AddVariable);
        AddEach(shape_.responses, &JobBuilder::AddResponse);
        AddEach(shape_.operators, &JobBuilder::AddOperator);
        AddEach(shape_.constraints, &JobBuilder::AddConstraint);
        AddControl();
        return text_.Take();
    }

  private:
    // Adds count commands of one kind, numbered from 0.
    void AddEach(std::size_t count, void (JobBuilder::*add)(std::size_t)) {
        for (std::size_t index = 0; index < count; ++index) {
            (this->*add)(index);
        }
    }

    // A group of elements or nodes with its members.
    void AddGroup(std::size_t index) {
        text_.Open("GROUP_DEF");
        text_.Item("ID_NAME", identifier('G', index));
        text_.Item("TYPE", draw_word(random_, GROUP_TYPES));
        text_.Item("ELEMENTS", write_brelt_list(group_members(random_)));
        text_.Close();
    }

    // Every other variable leaves its upper bound to the schema's default.
    void AddVariable(std::size_t index) {
        text_.Open("DV");
        text_.Item("ID_NAME", identifier('D', index));
        text_.Item("TYPE", draw_word(random_, VARIABLE_TYPES));
        text_.Item("GROUP", DrawGroup());
        text_.Item("LOWER", "0.001");
        if (index % 2 == 0) {
            text_.Item("UPPER", ZentuStringUtil::String(draw_between(random_, 5, 5) / 10.0));
        }
        text_.Close();
    }

    // Every third response leaves its load case to the schema's default.
    void AddResponse(std::size_t index) {
        text_.Open("DRESP");
        text_.Item("ID_NAME", response_identifier(index));
        text_.Item("TYPE", draw_word(random_, RESPONSE_TYPES));
        text_.Item("GROUP", DrawGroup());
        if (index % 3 != 0) {
            text_.Item("LOADCASE", std::to_string(draw_between(random_, 1, 4)));
        }
        text_.Close();
    }

    // An operator whose expression combines two to five responses.
    void AddOperator(std::size_t index) {
        text_.Open("OPERATOR");
        text_.Item("ID_NAME", operator_identifier(index));
        const std::size_t terms = static_cast<std::size_t>(draw_between(random_, 2, 4));
        text_.Item("ADD_FILE", response_expression(random_, shape_.responses, terms));
        text_.Close();
    }

    // Constraints bound responses and operators alike.
    void AddConstraint(std::size_t index) {
        text_.Open("CONSTRAINT");
        text_.Item("ID_NAME", identifier('C', index));
        text_.Item("DRESP", draw(random_, 2) == 0
                                ? response_identifier(draw(random_, shape_.responses))
                                : operator_identifier(draw(random_, shape_.operators)));
        text_.Item("TYPE", draw_word(random_, CONSTRAINT_TYPES));
        text_.Item("VALUE", ZentuStringUtil::String(draw_between(random_, 1, 100) / 100.0));
        text_.Close();
    }

    // The optimisation minimises the first operator until the stop criterion holds.
    void AddControl() {
        text_.Open("OPTIMIZE");
        text_.Item("ID_NAME", OPTIMIZE_IDENTIFIER);
        text_.Item("OBJ_FUNC", operator_identifier(0));
        text_.Item("STRATEGY", draw_word(random_, STRATEGIES));
        text_.Item("STOP", STOP_IDENTIFIER);
        text_.Close();
        text_.Open("STOP");
        text_.Item("ID_NAME", STOP_IDENTIFIER);
        text_.Item("ITER_MAX", std::to_string(draw_between(random_, 20, 80)));
        text_.Close();
    }

    // The identifier of any group of the job.
    std::string DrawGroup() { return identifier('G', draw(random_, shape_.groups)); }

    const std::size_t commandCount_;
    const JobShape shape_;
    std::mt19937 random_;
    JobText text_;
};

// A description of an item whose text is typed as type, without default.
ZentuCmdItemMetaData typed_item(CmdItem key, DataType type) {
    return ZentuCmdItemMetaData(key, type, "", "", 1);
}

// A description of a keyword item that accepts the words of choices.
template <std::size_t N>
ZentuCmdItemMetaData keyword_item(CmdItem key, const std::array<Keyword, N>& choices,
                                  const std::string& defaultValue) {
    ZentuCmdItemMetaData description(key, DataType::ENUM, defaultValue, "", 1);
    for (const Keyword& choice : choices) {
        description.keywords.Insert(choice.word, static_cast<int>(choice.value));
    }
    return description;
}

// A description of an item that names a command of kind by its identifier.
ZentuCmdItemMetaData reference_item(CmdItem key, Cmd kind) {
    return ZentuCmdItemMetaData(key, kind, "");
}

// The description of a command kind whose identifier is a string item.
ZentuCmdMetaData& add_command(ZentuCmdIoConfig& config, const char* keyword, Cmd kind) {
    return config.AddCmdMetadata(keyword, ZentuCmdMetaData(kind, false))
        .AddItem("ID_NAME", typed_item(CmdItem::ID_NAME, DataType::STRING));
}

}  // namespace

std::string job_text(std::size_t commandCount, std::uint32_t seed) {
    return JobBuilder(commandCount, seed).Build();
}

void write_job_file(const std::filesystem::path& path, std::size_t commandCount,
                    std::uint32_t seed) {
    const std::string text = job_text(commandCount, seed);
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file.write(text.data(), static_cast<std::streamsize>(text.size()));
    file.close();
    if (!file) {
        throw std::runtime_error("cannot write " + path.string());
    }
}

ZentuCmdIoConfig job_config(ExpressionRule rule) {
    ZentuCmdIoConfig config;
    add_command(config, "GROUP_DEF", Cmd::GROUP_DEF)
        .AddItem("TYPE", keyword_item(CmdItem::TYPE, GROUP_TYPES, "ELEMENT"))
        .AddItem("ELEMENTS", typed_item(CmdItem::LIST_BEGIN, DataType::BRELT_LIST))
        .AddItem("ELEMENT_GROUP", typed_item(CmdItem::ELEMENT_GROUP, DataType::BRELT_LIST));
    add_command(config, "DV", Cmd::DV)
        .AddItem("TYPE", keyword_item(CmdItem::TYPE, VARIABLE_TYPES, "DENSITY"))
        .AddItem("GROUP", reference_item(CmdItem::GROUP, Cmd::GROUP_DEF))
        .AddItem("LOWER", ZentuCmdItemMetaData(CmdItem::LOWER, 0.001, "", 1))
        .AddItem("UPPER", ZentuCmdItemMetaData(CmdItem::UPPER, 1.0, "", 1));
    add_command(config, "DRESP", Cmd::DRESP)
        .AddItem("TYPE", keyword_item(CmdItem::TYPE, RESPONSE_TYPES, ""))
        .AddItem("GROUP", reference_item(CmdItem::GROUP, Cmd::GROUP_DEF))
        .AddItem("LOADCASE", ZentuCmdItemMetaData(CmdItem::LOADCASE, 1, "", 1));
    // The expression keeps its case and blanks; TYPE, VARIABLE and WEIGHT are what the expression
    // rule turns it into, so that a written job reads back.
    add_command(config, "OPERATOR", Cmd::OPERATOR)
        .AddItem("ADD_FILE", typed_item(CmdItem::ADD_FILE, DataType::RAW_STRING))
        .AddItem("TYPE", keyword_item(CmdItem::TYPE, OPERATOR_TYPES, ""))
        .AddItem("VARIABLE", reference_item(CmdItem::DV, Cmd::DRESP))
        .AddItem("WEIGHT", typed_item(CmdItem::OBJ_FUNC, DataType::REAL));
    add_command(config, "CONSTRAINT", Cmd::CONSTRAINT)
        .AddItem("DRESP", reference_item(CmdItem::DRESP, Cmd::DRESP))
        .AddItem("TYPE", keyword_item(CmdItem::TYPE, CONSTRAINT_TYPES, ""))
        .AddItem("VALUE", typed_item(CmdItem::VALUE, DataType::REAL));
    add_command(config, "OPTIMIZE", Cmd::OPTIMIZE)
        .AddItem("OBJ_FUNC", reference_item(CmdItem::OBJ_FUNC, Cmd::OPERATOR))
        .AddItem("STRATEGY", keyword_item(CmdItem::STRATEGY, STRATEGIES, "MMA"))
        .AddItem("STOP", reference_item(CmdItem::STOP, Cmd::STOP));
    add_command(config, "STOP", Cmd::STOP)
        .AddItem("ITER_MAX", ZentuCmdItemMetaData(CmdItem::ITER_MAX, 100, "", 1));
    if (rule == ExpressionRule::REGISTERED) {
        config.AddRule(&ZentuDrespExpressionParser::dresp_expression_rule);
    }
    return config;
}

std::string response_identifier(std::size_t index) {
    return identifier('R', index);
}

std::string operator_identifier(std::size_t index) {
    return identifier('O', index);
}

std::string response_expression(std::mt19937& random, std::size_t responseCount,
                                std::size_t termCount) {
    std::string text;
    for (std::size_t term = 0; term < termCount; ++term) {
        if (term > 0) {
            text += draw(random, 2) == 0 ? " + " : " - ";
        }
        const std::size_t coefficient = draw(random, COEFFICIENTS.size() + 1);
        if (coefficient < COEFFICIENTS.size()) {
            text += COEFFICIENTS[coefficient];
            text += " * ";
        }
        text += '%' + response_identifier(draw(random, responseCount)) + '%';
    }
    return text;
}

}  // namespace ZentuJobGenerator
