// Item classes: the base class's neutral answers and type dispatch, text, reference, number,
// keyword and automatically typed items, their refusals and copies, and the item factory.
#include <gtest/gtest.h>

#include <cstdint>
#include <iomanip>
#include <map>
#include <memory>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "BreltList.h"
#include "KeywordsDictionary.h"
#include "ZentuCmdItemFactory.h"
#include "ZentuCmdItem_Util.h"
#include "ZentuMatrix.h"
#include "engine_test_support.h"
#include "zentu_test_cases.h"

namespace {

using zentu_test::BareItem;
using zentu_test::FailureLine;
using zentu_test::FailureOf;
using zentu_test::ProbeItem;
using ZentuCmdDefs::Cmd;
using ZentuCmdItemDefs::CmdItem;
using ZentuCmdItemDefs::DataType;
using ZentuCmdItemDefs::KeywordMap;
using ZentuCmdItemFactory::create;
using KeywordList = std::vector<std::pair<std::string, int>>;

const KeywordMap& Keywords() {
    static const KeywordMap keywords = ZentuCmdItemDefs::create_enum_map();
    return keywords;
}

std::unique_ptr<ZentuCmd> CommandWithId(const std::string& text) {
    auto cmd = std::make_unique<ZentuCmd>(Cmd::GROUP_DEF);
    cmd->AddStringItem(CmdItem::ID_NAME, text);
    return cmd;
}

// A dictionary set up as item descriptions set theirs up: codes 32 to 127, not-found value -1.
KeywordsDictionary<int> Described(const KeywordList& keywords) {
    KeywordsDictionary<int> dictionary;
    dictionary.Reset(-1);
    for (int code = 32; code <= 127; ++code) {
        dictionary.AllowCharacter(static_cast<char>(code));
    }
    dictionary.BuildAlphabet();
    for (const auto& [keyword, value] : keywords) {
        dictionary.Insert(keyword.c_str(), value);
    }
    return dictionary;
}

// Keywords written as "WORD=value" separated by commas, in the order given.
KeywordList Parsed(const std::string& text) {
    KeywordList keywords;
    std::istringstream in(text);
    for (std::string entry; std::getline(in, entry, ',');) {
        keywords.emplace_back(entry.substr(0, entry.find('=')),
                              std::stoi(entry.substr(entry.find('=') + 1)));
    }
    return keywords;
}

const KeywordList kNodal = Parsed("DENSITY=1,DISTRIBUTION=2,NODAL=3");

// The whole failure line of a keyword item refused for item TYPE, whose options are list, with
// the message cut to its longest length.
std::string Refusal(const std::string& text, const std::string& list) {
    return "|%P|ZentuCmdEngine|ZentuCmdEnumItem [] -14: " +
           ("The value \"" + text + "\" is not allowed for item TYPE.\nValid options are: \n" +
            list)
               .substr(0, 1023);
}

std::string EnumRefusalOf(const std::string& text, const KeywordsDictionary<int>& keywords) {
    return FailureLine(FailureOf([&] { ZentuCmdEnumItem("TYPE", text, keywords); }));
}

// The data types an item claims, as the digits of their values.
std::string Claims(const ZentuCmdItem& item) {
    std::string claims;
    for (int type = 0; type < 12; ++type) {
        if (item.HasType(static_cast<DataType>(type))) {
            claims += "0123456789ab"[type];
        }
    }
    return claims;
}

// An item's answers as one line: the data types it claims, class name=text, integer, real, keyword,
// vector, list, integer list, and the identifier of the command it refers to.
std::string Answers(const ZentuCmdItem& item) {
    std::ostringstream line;
    line << std::setprecision(15) << Claims(item);
    const ZentuMatrix<3, 1, double> vector = item.GetVector3d();
    line << " " << zentu_test::ClassOf(item) << " " << item.GetName() << "=" << item.GetString()
         << " " << item.GetInteger() << " " << item.GetReal() << " "
         << zentu_test::ToInt(item.GetEnum()) << " (" << vector(0, 0) << "," << vector(1, 0) << ","
         << vector(2, 0) << ") [";
    for (const std::string& part : item.GetList()) {
        line << part << ";";
    }
    line << "] {";
    for (int element : item.GetBreltList().elements) {
        line << element << ";";
    }
    line << "}";
    if (item.GetReference() != nullptr) {
        line << " ->" << item.GetReference()->Item(CmdItem::ID_NAME, 0).GetString();
    }
    return line.str();
}

// The item named TYPE that a case builds: "enum" a keyword item of the case's keywords, "dN" the
// factory's item for a keyword description of data type N, and N its item for data type N alone.
std::unique_ptr<ZentuCmdItem> Made(const std::string& how, const std::string& keywords,
                                   const std::string& text) {
    if (how == "enum") {
        return std::make_unique<ZentuCmdEnumItem>("TYPE", text, Described(Parsed(keywords)));
    }
    if (how[0] != 'd') {
        return create(static_cast<DataType>(std::stoi(how)), "TYPE", text, Keywords());
    }
    ZentuCmdItemMetaData description(CmdItem::TYPE, {{"NODAL", 3}, {"DENSITY", 1}}, "");
    description.type = static_cast<DataType>(std::stoi(how.substr(1)));
    return create("TYPE", text, description, Keywords());
}

// One item of every engine class beside the base class's own answers.
std::vector<std::unique_ptr<ZentuCmdItem>> EveryItemClass(const ZentuCmd& target) {
    std::vector<std::unique_ptr<ZentuCmdItem>> items;
    items.push_back(std::make_unique<BareItem>("bare"));
    items.push_back(std::make_unique<ZentuCmdRawStringItem>("raw", "lower"));
    items.push_back(std::make_unique<ZentuCmdStringItem>("string", "lower"));
    items.push_back(std::make_unique<ZentuCmdReferenceItem>("ref", target));
    items.push_back(std::make_unique<ZentuCmdIntItem>("int", 5));
    items.push_back(std::make_unique<ZentuCmdScalarItem>("real", 0.5));
    items.push_back(std::make_unique<ZentuCmdEnumItem>("enum", "nod", Described(kNodal)));
    items.push_back(std::make_unique<ZentuCmdAutoItem>("auto", "word", KeywordMap()));
    return items;
}

// Each item class reads its text into exactly the answers the table gives, or refuses it with
// exactly the failure the table gives.
TEST(Item, ReadsTextIntoTheAnswersOrTheRefusalOfTheTable) {
    for (const auto& c : zentu_test::DataCases("engine/cases/item_texts.txt", 4)) {
        SCOPED_TRACE(c.where);
        std::string outcome;
        try {
            outcome = Answers(*Made(c.fields[0], c.fields[1], c.fields[2]));
        } catch (const KPL_Failure& failure) {
            outcome = FailureLine(failure);
        }
        EXPECT_EQ(outcome, c.fields[3]);
    }
}

// Items claim exactly the types their own queries answer, and readings an item lacks give
// neutral answers; a missing integer list still reads as { 0 }.
TEST(Item, ReadingsAnItemLacksGiveNeutralAnswers) {
    const auto target = CommandWithId("g1");
    const std::map<std::string, std::string> expected = {
        {"bare", " " + zentu_test::ClassOf(BareItem("")) + " bare= 0 0 -1 (0,0,0) [] {0;}"},
        {"raw", "3 raw raw=lower 0 0 -1 (0,0,0) [] {0;}"},
        {"string", "3 string string=LOWER 0 0 -1 (0,0,0) [] {0;}"},
        {"ref", "38 ref ref=G1 0 0 -1 (0,0,0) [] {0;} ->G1"},
        {"int", "0 int int=5 5 0 -1 (0,0,0) [] {0;}"},
        {"real", "1 real real=0.5 0 0.5 -1 (0,0,0) [] {0;}"},
        {"enum", "039 enum enum=NOD 3 0 3 (0,0,0) [] {0;}"},
        {"auto", "37 auto auto=WORD 0 0 -1 (0,0,0) [WORD;] {}"}};
    for (const auto& item : EveryItemClass(*target)) {
        EXPECT_EQ(Answers(*item), expected.at(item->GetName()));
    }
    const BreltList<int> list = BareItem("bare").GetBreltList();
    EXPECT_TRUE(list.default_step == 1 && list.break_lines && list.clear_on_read);
    EXPECT_EQ(ZentuCmdScalarItem("W", 2.0).GetString() + ZentuCmdScalarItem("W", -1.5).GetString(),
              "2-1.5");
    EXPECT_FALSE(create(DataType::REFERENCE, "G", "G1", Keywords())->HasReference());
}

// HasType asks a host item's own queries, and types without a query are never claimed.
TEST(Item, HasTypeDispatchesToTheItemsQueries) {
    const std::pair<unsigned, const char*> cases[] = {
        {zentu_test::kInteger, "0"},   {zentu_test::kReal, "1"},      {zentu_test::kVector3d, "2"},
        {zentu_test::kString, "3"},    {zentu_test::kBreltList, "6"}, {zentu_test::kList, "7"},
        {zentu_test::kReference, "8"}, {zentu_test::kEnum, "9"},      {~0U, "01236789"}};
    for (const auto& [readings, claims] : cases) {
        EXPECT_EQ(Claims(ProbeItem("P", "", readings)), claims);
    }
    for (std::int32_t value : {INT32_MIN, -1, 12}) {
        EXPECT_FALSE(ProbeItem("P", "", ~0U).HasType(static_cast<DataType>(value))) << value;
    }
}

// Texts read up to the first NUL: string items raise ASCII letters only and raw items keep every
// byte; keyword items look up and quote the text before the NUL, and any text is an automatic one.
TEST(Item, TextsWithNulAndHighBytes) {
    const std::pair<std::string, std::string> conversions[] = {
        {"stra\xC3\x9Fx \xE1\xF1x\x80\xFF", "STRA\xC3\x9FX \xE1\xF1X\x80\xFF"},
        {std::string("ab\0cd", 5), std::string("AB\0cd", 5)},
        {std::string("\0abc", 4), std::string("\0abc", 4)}};
    for (const auto& [input, upper] : conversions) {
        EXPECT_EQ(ZentuCmdStringItem("name", input).GetString(), upper) << input;
        EXPECT_EQ(ZentuCmdRawStringItem("name", input).GetString(), input);
    }
    const ZentuCmdEnumItem cut("TYPE", std::string("nodal\0xyz", 9), Described(kNodal));
    EXPECT_EQ(cut.GetString() + std::to_string(cut.GetInteger()), std::string("NODAL\0xyz3", 10));
    const ZentuCmdEnumItem empty("TYPE", std::string("\0x", 2), Described({{"ONLY", 4}}));
    EXPECT_EQ(empty.GetString() + std::to_string(empty.GetInteger()), std::string("\0x4", 3));
    const std::string list = "DENSITY, DISTRIBUTION, NODAL";
    EXPECT_EQ(EnumRefusalOf(std::string("\0NODAL", 6), Described(kNodal)), Refusal("", list));
    EXPECT_EQ(EnumRefusalOf("\x80", Described(kNodal)), Refusal("\x80", list));
    for (const std::string& text :
         {std::string("1\0,2,3", 6), std::string("\xff\xfe,\x80", 4), std::string(100000, '7'),
          std::string(5000, ','), std::string("1--5"), std::string("+-1"), std::string(":"),
          std::string("1-5:0")}) {
        EXPECT_TRUE(ZentuCmdAutoItem("VALUE", text, KeywordMap()).HasString());
    }
}

// A reference's text is the target's first identifier as it stands when asked.
TEST(Item, ReferenceTextIsTheTargetsFirstIdentifierReadAtCallTime) {
    ZentuCmd target(Cmd::DRESP);
    const ZentuCmdReferenceItem item("DRESP", target);
    EXPECT_EQ(item.GetString(), "");
    target.AddStringItem(CmdItem::TYPE, "not an identifier");
    EXPECT_EQ(item.GetString(), "");
    target.AddItem(CmdItem::ID_NAME, std::make_unique<ZentuCmdRawStringItem>("ID_NAME", "raw"));
    target.AddStringItem(CmdItem::ID_NAME, "d2");
    EXPECT_EQ(item.GetString(), "raw");
}

// Refusal messages are cut to 1023 characters and take texts as arguments, never as format;
// without an alphabet a keyword item accepts nothing, not even the empty text.
TEST(Item, RefusalMessagesAreCutAndNeverFormatted) {
    const std::string longText(3000, '9');
    const std::string message =
        FailureOf([&] { ZentuCmdIntItem("VALUE", longText + "x"); }).GetMessage();
    EXPECT_EQ(message, ("The item VALUE has an invalid type. '" + longText).substr(0, 1023));
    KeywordList many;
    std::string list;
    for (int i = 0; i < 200; ++i) {
        many.emplace_back("KEYWORD_" + std::to_string(1000 + i), i);
        list += (i == 0 ? "" : ", ") + many.back().first;
    }
    EXPECT_EQ(EnumRefusalOf("X", Described(many)), Refusal("X", list));
    EXPECT_EQ(EnumRefusalOf(std::string(100000, 'Q'), Described(kNodal)),
              Refusal(std::string(100000, 'Q'), ""));
    KeywordsDictionary<int> reset = Described(kNodal);
    reset.Reset(-1);
    for (const std::string text : {"", "N"}) {
        EXPECT_EQ(EnumRefusalOf(text, reset), Refusal(text, ""));
        EXPECT_EQ(EnumRefusalOf(text, KeywordsDictionary<int>()), Refusal(text, ""));
    }
    EXPECT_EQ(FailureOf([] {
                  ZentuCmdEnumItem("A%sB%n", "100%d%s", Described({{"ALL", 1}}));
              }).GetMessage(),
              "The value \"100%d%s\" is not allowed for item A%sB%n.\nValid options are: \nALL");
}

// Only reference and automatic items take a reference, and the latest offer wins. Clones are
// independent objects of the source's class with all its answers, which stay so when the source
// is retargeted or destroyed; copies and assignments (also onto itself) alike.
TEST(Item, ReferencesClonesAndCopies) {
    const auto target = CommandWithId("g1");
    const auto other = CommandWithId("g2");
    for (auto& item : EveryItemClass(*other)) {
        const bool takes = item->GetName() == "ref" || item->GetName() == "auto";
        const std::string untouched = Answers(*item);
        item->AddReference(*target);
        const std::string expected = Answers(*item);
        EXPECT_EQ(item->HasReference(), takes) << untouched;
        EXPECT_EQ(item->GetReference(), takes ? target.get() : nullptr) << untouched;
        EXPECT_EQ(expected == untouched, !takes) << untouched;
        const std::unique_ptr<ZentuCmdItem> clone = item->Clone();
        item->AddReference(*other);
        item.reset();
        EXPECT_EQ(Answers(*clone), expected);
    }
    ZentuCmdAutoItem automatic("auto", "1-5:2", KeywordMap());
    automatic.AddReference(*target);
    const ZentuCmdAutoItem copy(automatic);
    ZentuCmdAutoItem assigned("other", "7", KeywordMap());
    assigned = automatic;
    ZentuCmdAutoItem& alias = assigned;
    assigned = alias;
    const std::string expected = Answers(automatic);
    automatic.AddReference(*other);
    EXPECT_EQ(Answers(copy), expected);
    EXPECT_EQ(Answers(assigned), expected);
}

// The item helpers look at the list reading and at the kind of the referred command.
TEST(Item, UtilityQueries) {
    EXPECT_FALSE(ZentuCmdItem_Util::has_item_list_with_char(ZentuCmdStringItem("S", "A\nB"), '\n'));
    EXPECT_TRUE(ZentuCmdItem_Util::has_item_list_with_char(
        ZentuCmdAutoItem("L", "A\nB, C", KeywordMap()), '\n'));
    EXPECT_FALSE(ZentuCmdItem_Util::has_item_list_with_char(
        ZentuCmdAutoItem("L", "A, B", KeywordMap()), '\n'));
    const ZentuCmd group(Cmd::GROUP_DEF);
    ZentuCmdAutoItem automatic("GROUP", "G1", KeywordMap());
    EXPECT_FALSE(ZentuCmdItem_Util::has_item_reference_of_type(automatic, Cmd::GROUP_DEF));
    automatic.AddReference(group);
    EXPECT_TRUE(ZentuCmdItem_Util::has_item_reference_of_type(automatic, Cmd::GROUP_DEF));
    EXPECT_FALSE(ZentuCmdItem_Util::has_item_reference_of_type(automatic, Cmd::DV));
}

// Default items read the default of their type: numbers from the numeric default, everything
// else from the default text, even where the description says it has none.
TEST(ItemFactory, DefaultValueItemsReadTheDefaultOfTheirType) {
    ZentuCmdItemMetaData integer(CmdItem::VALUE, 42, "", 1);
    integer.default_value = "7";
    ZentuCmdItemMetaData keyword(CmdItem::TYPE, {{"NODAL", 3}, {"DENSITY", 1}}, "nodal");
    const std::pair<ZentuCmdItemMetaData, const char*> cases[] = {
        {integer, "0 int Name=42 42 0 -1 (0,0,0) [] {0;}"},
        {ZentuCmdItemMetaData(CmdItem::MIN, 0.1, "", 1),
         "1 real Name=0.1 0 0.1 -1 (0,0,0) [] {0;}"},
        {ZentuCmdItemMetaData(CmdItem::DESCRIPTION, std::string("mixed"), "", 1),
         "3 string Name=MIXED 0 0 -1 (0,0,0) [] {0;}"},
        {ZentuCmdItemMetaData(CmdItem::FILE, DataType::RAW_STRING, "a.Dat", "", 1),
         "3 raw Name=a.Dat 0 0 -1 (0,0,0) [] {0;}"},
        {keyword, "039 enum Name=NODAL 3 0 3 (0,0,0) [] {0;}"},
        {ZentuCmdItemMetaData(CmdItem::GROUP), "36 auto Name= 0 0 -1 (0,0,0) [] {}"},
        {ZentuCmdItemMetaData(CmdItem::GROUP, ZentuCmdDefs::Cmd::GROUP_DEF, " 8 "),
         "01367 auto Name=8 8 8 -1 (0,0,0) [8;] {8;}"},
    };
    for (const auto& [description, expected] : cases) {
        EXPECT_EQ(Answers(*ZentuCmdItemFactory::create_default_value_item("Name", description,
                                                                          Keywords())),
                  expected);
    }
    keyword.default_value = "LINEAR";
    EXPECT_EQ(FailureOf([&] {
                  ZentuCmdItemFactory::create_default_value_item("TYPE", keyword, Keywords());
              }).GetMessage(),
              "The value \"LINEAR\" is not allowed for item TYPE.\nValid options are: \n"
              "DENSITY, NODAL");
}

}  // namespace
