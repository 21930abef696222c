// Item classes: the base class's neutral answers and type dispatch, text, reference, number,
// keyword and automatically typed items, their refusals and copies, and the item factory.
#include <gtest/gtest.h>

#include <cstdint>
#include <iomanip>
#include <map>
#include <memory>
#include <set>
#include <sstream>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "BreltList.h"
#include "KeywordsDictionary.h"
#include "ZentuCmdItemFactory.h"
#include "ZentuCmdItem_Util.h"
#include "ZentuMatrix.h"
#include "engine_test_support.h"

namespace {

using zentu_test::BareItem;
using zentu_test::ClassOf;
using zentu_test::FailureLine;
using zentu_test::FailureOf;
using zentu_test::ProbeItem;
using zentu_test::ToInt;
using ZentuCmdDefs::Cmd;
using ZentuCmdItemDefs::CmdItem;
using ZentuCmdItemDefs::DataType;
using ZentuCmdItemDefs::EnumValue;
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

const KeywordList kNodal = {{"DENSITY", 1}, {"DISTRIBUTION", 2}, {"NODAL", 3}};

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
    line << Claims(item);
    const ZentuMatrix<3, 1, double> vector = item.GetVector3d();
    line << " " << ClassOf(item) << " " << item.GetName() << "=" << item.GetString() << " "
         << item.GetInteger() << " " << item.GetReal() << " " << ToInt(item.GetEnum()) << " ("
         << vector(0, 0) << "," << vector(1, 0) << "," << vector(2, 0) << ") [";
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

// Items claim exactly the types their own queries answer, and readings an item lacks give
// neutral answers; a missing integer list still reads as { 0 }.
TEST(Item, ReadingsAnItemLacksGiveNeutralAnswers) {
    const auto target = CommandWithId("g1");
    const std::map<std::string, std::string> expected = {
        {"bare", " " + ClassOf(BareItem("")) + " bare= 0 0 -1 (0,0,0) [] {0;}"},
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

// String items raise ASCII letters only, up to the first NUL; raw items keep every byte.
TEST(Item, StringItemRaisesAsciiLettersRawItemKeepsEveryByte) {
    const std::vector<std::pair<std::string, std::string>> conversions = {
        {"MiXeD_09 z", "MIXED_09 Z"},
        {"`a{z@A[Z", "`A{Z@A[Z"},
        {"stra\xC3\x9Fx \xE1\xF1x\x80\xFF", "STRA\xC3\x9FX \xE1\xF1X\x80\xFF"},
        {std::string("ab\0cd", 5), std::string("AB\0cd", 5)},
        {std::string("\0abc", 4), std::string("\0abc", 4)}};
    for (const auto& [input, upper] : conversions) {
        EXPECT_EQ(ZentuCmdStringItem("name", input).GetString(), upper) << input;
        EXPECT_EQ(ZentuCmdRawStringItem("name", input).GetString(), input);
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

// Integer items take whole decimal integers in range, with blanks and a sign around them.
TEST(Item, IntegerItemAcceptsWholeDecimalIntegers) {
    std::string values;
    for (const char* text : {"0", "-7", "+7", "\t-3\n", "007", "2147483647", "-2147483648"}) {
        const ZentuCmdIntItem item("VALUE", text);
        values += std::to_string(item.GetInteger()) + "=" + item.GetString() + " ";
    }
    EXPECT_EQ(values, "0=0 -7=-7 7=7 -3=-3 7=7 2147483647=2147483647 -2147483648=-2147483648 ");
    for (const char* text :
         {"", " ", "-", "12abc", "1.0", "0x10", "1 2", "--1", "2147483648", "-2147483649"}) {
        EXPECT_EQ(FailureLine(FailureOf([&] { ZentuCmdIntItem("ITER_MAX", text); })),
                  std::string("|%P|ZentuCmdEngine|ZentuCmdIntItem [] -14: The item ITER_MAX has "
                              "an invalid type. '") +
                      text + "' must be an integer value.");
    }
}

// Real items take decimal numbers in any notation and write the shortest text that reads back.
TEST(Item, RealItemAcceptsNumbers) {
    std::ostringstream values;
    values << std::setprecision(17);
    for (const char* text :
         {"7", " -0.125 ", "1e-3", "+.5", "3.", "1E+2", "1e-400", "-2147483648"}) {
        values << ZentuCmdScalarItem("WEIGHT", text).GetReal() << " ";
    }
    EXPECT_EQ(values.str(), "7 -0.125 0.001 0.5 3 100 0 -2147483648 ");
    for (const char* text :
         {"", ".", "1e", "e5", "1.5x", "inf", "nan", "0x1p3", "1e999", "1 2", "1,5", "- 1"}) {
        EXPECT_EQ(FailureLine(FailureOf([&] { ZentuCmdScalarItem("WEIGHT", text); })),
                  std::string("|%P|ZentuCmdEngine|ZentuCmdScalarItem [] -14: The item WEIGHT has "
                              "an invalid type. '") +
                      text + "' must be a scalar value.");
    }
    EXPECT_EQ(ZentuCmdScalarItem("W", 2.0).GetString(), "2");
    EXPECT_EQ(ZentuCmdScalarItem("W", -1.5).GetString(), "-1.5");
}

// Refusal messages are cut to 1023 characters, however long the text or the option list.
TEST(Item, RefusalMessagesAreCutTo1023Characters) {
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
}

// Keyword items take keywords and unique abbreviations in any case, keeping the text raised.
TEST(Item, KeywordItemAcceptsKeywordsAndUniqueAbbreviations) {
    const std::tuple<std::string, KeywordList, int, std::string> cases[] = {
        {"NODAL", kNodal, 3, "NODAL"},
        {"nOd", kNodal, 3, "NOD"},
        {"de", kNodal, 1, "DE"},
        {"Di", kNodal, 2, "DI"},
        {"distribution", kNodal, 2, "DISTRIBUTION"},
        {std::string("nodal\0xyz", 9), kNodal, 3, std::string("NODAL\0xyz", 9)},
        // A text that starts with NUL is looked up as the empty text.
        {std::string("\0x", 2), {{"ONLY", 4}}, 4, std::string("\0x", 2)},
        {"", {{"ONLY", 4}}, 4, ""},
        {"", {}, -1, ""},
        {"abc", {{"ABCD", 20}, {"ABC", 10}}, 10, "ABC"},
        {"ABCD", {{"ABCD", 20}, {"ABC", 10}}, 20, "ABCD"},
        {"AL", {{"ALL*", 9}, {"*", 6}}, 9, "AL"},
        {"*", {{"ALL*", 9}, {"*", 6}}, 6, "*"},
    };
    for (const auto& [text, keywords, value, kept] : cases) {
        const ZentuCmdEnumItem item("TYPE", text, Described(keywords));
        EXPECT_EQ(item.GetInteger(), value) << text;
        EXPECT_EQ(ToInt(item.GetEnum()), value) << text;
        EXPECT_EQ(item.GetString(), kept) << text;
    }
}

// A refusal lists the options sorted, without starred keywords, quoting the text up to a NUL.
TEST(Item, KeywordItemRefusesWithTheSortedListOfOptions) {
    const std::string list = "DENSITY, DISTRIBUTION, NODAL";
    for (const KeywordList& order : {kNodal, KeywordList(kNodal.rbegin(), kNodal.rend())}) {
        for (const std::string text :
             {"D", "NODALX", "", "NO\tDAL", "NODAL\t", "N\xc3\xa9", "\x80", " NODAL"}) {
            EXPECT_EQ(EnumRefusalOf(text, Described(order)), Refusal(text, list));
        }
    }
    EXPECT_EQ(EnumRefusalOf(std::string("\0NODAL", 6), Described(kNodal)), Refusal("", list));
    for (const std::string text : {"AB", "ABCDE"}) {
        EXPECT_EQ(EnumRefusalOf(text, Described({{"ABCD", 20}, {"ABC", 10}})),
                  Refusal(text, "ABC, ABCD"));
    }
    EXPECT_EQ(EnumRefusalOf("A", Described({{"NODAL", 3}, {"A*B", 5}, {"ALL*", 9}})),
              Refusal("A", "A*B, NODAL"));
    EXPECT_EQ(EnumRefusalOf("X", Described({{"ALL*", 9}, {"*", 6}})), Refusal("X", ""));
    EXPECT_EQ(EnumRefusalOf("A", Described({})), Refusal("A", ""));
    // Without an alphabet nothing is accepted, not even the empty text.
    KeywordsDictionary<int> reset = Described(kNodal);
    reset.Reset(-1);
    for (const std::string text : {"", "N"}) {
        EXPECT_EQ(EnumRefusalOf(text, reset), Refusal(text, ""));
        EXPECT_EQ(EnumRefusalOf(text, KeywordsDictionary<int>()), Refusal(text, ""));
    }
    // Texts are arguments of the message, never part of its format.
    EXPECT_EQ(FailureOf([] {
                  ZentuCmdEnumItem("A%sB%n", "100%d%s", Described({{"ALL", 1}}));
              }).GetMessage(),
              "The value \"100%d%s\" is not allowed for item A%sB%n.\nValid options are: \nALL");
}

// Every reading that a text allows is decided on its own, with the values behind it: vector parts
// are 0 where no number, and keywords match only whole trimmed, raised texts.
TEST(Item, AutomaticItemDecidesEveryReadingOfItsText) {
    const std::pair<const char*, const char*> cases[] = {
        {" -5 ", "01367 auto V=-5 -5 -5 -1 (0,0,0) [-5;] {-5;}"},
        {"2.5", "137 auto V=2.5 0 2.5 -1 (0,0,0) [2.5;] {}"},
        {"1e5", "137 auto V=1E5 0 100000 -1 (0,0,0) [1E5;] {}"},
        {"1,2,3", "2367 auto V=1,2,3 0 0 -1 (1,2,3) [1;2;3;] {1;2;3;}"},
        {"1,A,3", "37 auto V=1,A,3 0 0 -1 (1,0,3) [1;A;3;] {}"},
        {"1,2", "367 auto V=1,2 0 0 -1 (0,0,0) [1;2;] {1;2;}"},
        {"1-10:3", "367 auto V=1-10:3 0 0 -1 (0,0,0) [1-10:3;] {1;4;7;10;}"},
        {"\"1,2,3\"", "37 auto V=\"1,2,3\" 0 0 -1 (0,0,0) [\"1;2;3\";] {}"},
        {"'7'", "37 auto V='7' 0 0 -1 (0,0,0) ['7';] {}"},
        {"  group_1  ", "37 auto V=GROUP_1 0 0 -1 (0,0,0) [GROUP_1;] {}"},
        {"", "36 auto V= 0 0 -1 (0,0,0) [] {}"},
        {"   ", "36 auto V= 0 0 -1 (0,0,0) [] {}"},
        {" 1.5 , 2 , -3e1 ", "237 auto V=1.5 , 2 , -3E1 0 0 -1 (1.5,2,-30) [1.5;2;-3E1;] {}"},
        {"1-2000000000", "37 auto V=1-2000000000 0 0 -1 (0,0,0) [1-2000000000;] {}"},
        // The integer-list reader, like a stream, ends quietly when a number runs out of range
        // at the very end of the text; the list is then empty.
        {"2147483648", "1367 auto V=2147483648 0 2.14748e+09 -1 (0,0,0) [2147483648;] {}"},
        {" density ", "379 auto V=DENSITY 0 0 68 (0,0,0) [DENSITY;] {}"},
        {"dens", "37 auto V=DENS 0 0 -1 (0,0,0) [DENS;] {}"},
    };
    for (const auto& [text, expected] : cases) {
        EXPECT_EQ(Answers(ZentuCmdAutoItem("V", text, Keywords())), expected);
    }
    for (const std::string& text :
         {std::string("1\0,2,3", 6), std::string("\xff\xfe,\x80", 4), std::string(100000, '7'),
          std::string(5000, ','), std::string("1--5"), std::string("+-1"), std::string(":"),
          std::string("1-5:0")}) {
        EXPECT_TRUE(ZentuCmdAutoItem("VALUE", text, KeywordMap()).HasString());
    }
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

// Each data type gets its class, by description or by type alone, and the text unchanged; only
// automatically typed items read the keyword map, keyword items read the description's keywords.
TEST(ItemFactory, BuildsTheClassOfTheDataTypeFromUnchangedText) {
    const std::tuple<int, const char*, std::string> cases[] = {
        {0, " 5 ", "0 int Name=5 5 0 -1 (0,0,0) [] {0;}"},
        {1, "0.5", "1 real Name=0.5 0 0.5 -1 (0,0,0) [] {0;}"},
        {2, " 1,2,3 ", "2367 auto Name=1,2,3 0 0 -1 (1,2,3) [1;2;3;] {1;2;3;}"},
        {3, " aBc ", "3 string Name= ABC  0 0 -1 (0,0,0) [] {0;}"},
        {4, " aBc ", "3 raw Name= aBc  0 0 -1 (0,0,0) [] {0;}"},
        {8, "combine", "379 auto Name=COMBINE 0 0 87 (0,0,0) [COMBINE;] {}"},
        {9, "nod", "039 enum Name=NOD 3 0 3 (0,0,0) [] {0;}"},
        {10, "combine", "379 auto Name=COMBINE 0 0 87 (0,0,0) [COMBINE;] {}"},
        {-1, "1-5", "367 auto Name=1-5 0 0 -1 (0,0,0) [1-5;] {1;2;3;4;5;}"},
    };
    for (const auto& [type, text, expected] : cases) {
        ZentuCmdItemMetaData description(CmdItem::TYPE, {{"NODAL", 3}, {"DENSITY", 1}}, "");
        description.type = static_cast<DataType>(type);
        EXPECT_EQ(Answers(*create("Name", text, description, Keywords())), expected);
        if (type != 9) {
            EXPECT_EQ(Answers(*create(static_cast<DataType>(type), "Name", text, Keywords())),
                      expected);
        }
    }
    EXPECT_FALSE(create(DataType::REFERENCE, "G", "G1", Keywords())->HasReference());
}

// Refusals of the built item pass through with its own texts; by type alone a keyword item has
// no keywords and takes only the empty text.
TEST(ItemFactory, RefusalsPassThroughWithTheItemsTexts) {
    const std::tuple<DataType, const char*, std::string> cases[] = {
        {DataType::INTEGER, "12abc",
         "|%P|ZentuCmdEngine|ZentuCmdIntItem [] -14: The item TYPE has an invalid type. '12abc' "
         "must be an integer value."},
        {DataType::REAL, "1,5",
         "|%P|ZentuCmdEngine|ZentuCmdScalarItem [] -14: The item TYPE has an invalid type. '1,5' "
         "must be a scalar value."},
        {DataType::ENUM, "yes",
         "|%P|ZentuCmdEngine|ZentuCmdEnumItem [] -14: The value \"yes\" is not allowed for item "
         "TYPE.\nValid options are: \n"},
    };
    for (const auto& [type, text, expected] : cases) {
        EXPECT_EQ(FailureLine(FailureOf([&] { create(type, "TYPE", text, Keywords()); })),
                  expected);
    }
    EXPECT_EQ(Answers(*create(DataType::ENUM, "TYPE", "", Keywords())),
              "039 enum TYPE= -1 0 -1 (0,0,0) [] {0;}");
    const ZentuCmdItemMetaData description(CmdItem::TYPE, {{"NODAL", 3}}, "");
    EXPECT_EQ(FailureOf([&] { create("TYPE", "COMBINE", description, Keywords()); }).GetMessage(),
              "The value \"COMBINE\" is not allowed for item TYPE.\nValid options are: \nNODAL");
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
