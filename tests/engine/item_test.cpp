// Item classes: the base class's neutral answers and type dispatch, text, reference, number,
// keyword and automatically typed items, their refusals and copies, and the item factory.
#include <gtest/gtest.h>

#include <iomanip>
#include <sstream>

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
using zentu_test::Keywords;
using zentu_test::ProbeItem;
using ZentuCmdDefs::Cmd;
using ZentuCmdItemDefs::CmdItem;
using ZentuCmdItemDefs::DataType;
using ZentuCmdItemDefs::KeywordMap;
using ZentuCmdItemFactory::create;

std::unique_ptr<ZentuCmd> CommandWithId(const std::string& text) {
    auto cmd = std::make_unique<ZentuCmd>(Cmd::GROUP_DEF);
    cmd->AddStringItem(CmdItem::ID_NAME, text);
    return cmd;
}

// A dictionary set up as item descriptions set theirs up (codes 32 to 127, not-found value -1)
// with keywords written as "WORD=value", separated by commas, inserted in the order given.
KeywordsDictionary<int> Described(const std::string& keywords) {
    KeywordsDictionary<int> dictionary;
    dictionary.Reset(-1);
    for (int code = 32; code <= 127; ++code) {
        dictionary.AllowCharacter(static_cast<char>(code));
    }
    dictionary.BuildAlphabet();
    std::istringstream in(keywords);
    for (std::string entry; std::getline(in, entry, ',');) {
        const std::size_t equals = entry.find('=');
        dictionary.Insert(entry.substr(0, equals).c_str(), std::stoi(entry.substr(equals + 1)));
    }
    return dictionary;
}

const std::string kNodal = "DENSITY=1,DISTRIBUTION=2,NODAL=3";

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
        return std::make_unique<ZentuCmdEnumItem>("TYPE", text, Described(keywords));
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
// exactly the failure the table gives; bytes the table cannot show are written <xHH>.
TEST(Item, ReadsTextIntoTheAnswersOrTheRefusalOfTheTable) {
    for (const auto& c : zentu_test::DataCases("engine/cases/item_texts.txt", 4)) {
        SCOPED_TRACE(c.where);
        std::string outcome;
        try {
            outcome = Answers(*Made(c.fields[0], c.fields[1], zentu_test::Bytes(c.fields[2])));
        } catch (const KPL_Failure& failure) {
            outcome = FailureLine(failure);
        }
        EXPECT_EQ(outcome, zentu_test::Bytes(c.fields[3]));
    }
    // Any text is an automatic one, however long, whatever bytes it holds and however it ends.
    for (const std::string& text :
         {std::string("1\0,2,3", 6), std::string("\xff\xfe,\x80", 4), std::string(100000, '7'),
          std::string(5000, ','), std::string("1--5"), std::string("+-1"), std::string(":"),
          std::string("1-5:0")}) {
        EXPECT_TRUE(ZentuCmdAutoItem("VALUE", text, KeywordMap()).HasString());
    }
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
    std::string many;
    std::string list;
    for (int i = 0; i < 200; ++i) {
        const std::string keyword = "KEYWORD_" + std::to_string(1000 + i);
        many += (i == 0 ? "" : ",") + keyword + "=" + std::to_string(i);
        list += (i == 0 ? "" : ", ") + keyword;
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
    EXPECT_EQ(
        FailureOf([] { ZentuCmdEnumItem("A%sB%n", "100%d%s", Described("ALL=1")); }).GetMessage(),
        "The value \"100%d%s\" is not allowed for item A%sB%n.\nValid options are: \nALL");
}

// Items claim exactly the types their own queries answer, and readings an item lacks give
// neutral answers. Only reference and automatic items take a reference, and the latest offer wins.
// Clones are independent objects of the source's class with all its answers, which stay so when
// the source is retargeted or destroyed; copies and assignments (also onto itself) alike.
TEST(Item, AnswersReferencesClonesAndCopiesOfEveryClass) {
    const auto target = CommandWithId("g1");
    const auto other = CommandWithId("g2");
    const auto cases = zentu_test::DataCases("engine/cases/item_classes.txt", 1);
    auto items = EveryItemClass(*target);
    ASSERT_EQ(cases.size(), items.size());
    for (std::size_t i = 0; i < items.size(); ++i) {
        std::unique_ptr<ZentuCmdItem>& item = items[i];
        const std::string untouched = Answers(*item);
        EXPECT_EQ(untouched, cases[i].fields[0]) << cases[i].where;
        const bool takes = item->GetName() == "ref" || item->GetName() == "auto";
        item->AddReference(*other);
        const std::string expected = Answers(*item);
        EXPECT_EQ(item->HasReference(), takes) << untouched;
        EXPECT_EQ(item->GetReference(), takes ? other.get() : nullptr) << untouched;
        EXPECT_EQ(expected == untouched, !takes) << untouched;
        const std::unique_ptr<ZentuCmdItem> clone = item->Clone();
        item->AddReference(*target);
        item.reset();
        EXPECT_EQ(Answers(*clone), expected);
    }
    // A missing integer list still reads as { 0 }.
    const BreltList<int> list = BareItem("bare").GetBreltList();
    EXPECT_TRUE(list.default_step == 1 && list.break_lines && list.clear_on_read);
    EXPECT_EQ(ZentuCmdScalarItem("W", 2.0).GetString() + ZentuCmdScalarItem("W", -1.5).GetString(),
              "2-1.5");
    EXPECT_FALSE(create(DataType::REFERENCE, "G", "G1", Keywords())->HasReference());
    // The item helpers look at the list reading and at the kind of the referred command.
    ZentuCmdAutoItem automatic("auto", "1-5:2", KeywordMap());
    EXPECT_FALSE(ZentuCmdItem_Util::has_item_reference_of_type(automatic, Cmd::GROUP_DEF));
    automatic.AddReference(*target);
    EXPECT_TRUE(ZentuCmdItem_Util::has_item_reference_of_type(automatic, Cmd::GROUP_DEF));
    EXPECT_FALSE(ZentuCmdItem_Util::has_item_reference_of_type(automatic, Cmd::DV));
    EXPECT_FALSE(ZentuCmdItem_Util::has_item_list_with_char(ZentuCmdStringItem("S", "A\nB"), '\n'));
    EXPECT_TRUE(ZentuCmdItem_Util::has_item_list_with_char(
        ZentuCmdAutoItem("L", "A\nB, C", KeywordMap()), '\n'));
    EXPECT_FALSE(ZentuCmdItem_Util::has_item_list_with_char(
        ZentuCmdAutoItem("L", "A, B", KeywordMap()), '\n'));
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

// Default items read the default of their type: numbers from the numeric default, everything
// else from the default text, even where the description says it has none.
TEST(ItemFactory, DefaultValueItemsReadTheDefaultOfTheirType) {
    ZentuCmdItemMetaData integer(CmdItem::VALUE, 42, "", 1);
    integer.default_value = "7";
    ZentuCmdItemMetaData keyword(CmdItem::TYPE, {{"NODAL", 3}, {"DENSITY", 1}}, "nodal");
    const ZentuCmdItemMetaData descriptions[] = {
        integer,
        ZentuCmdItemMetaData(CmdItem::MIN, 0.1, "", 1),
        ZentuCmdItemMetaData(CmdItem::DESCRIPTION, std::string("mixed"), "", 1),
        ZentuCmdItemMetaData(CmdItem::FILE, DataType::RAW_STRING, "a.Dat", "", 1),
        keyword,
        ZentuCmdItemMetaData(CmdItem::GROUP),
        ZentuCmdItemMetaData(CmdItem::GROUP, ZentuCmdDefs::Cmd::GROUP_DEF, " 8 ")};
    const auto cases = zentu_test::DataCases("engine/cases/default_items.txt", 1);
    ASSERT_EQ(cases.size(), std::size(descriptions));
    for (std::size_t i = 0; i < cases.size(); ++i) {
        EXPECT_EQ(Answers(*ZentuCmdItemFactory::create_default_value_item("Name", descriptions[i],
                                                                          Keywords())),
                  cases[i].fields[0])
            << cases[i].where;
    }
    keyword.default_value = "LINEAR";
    EXPECT_EQ(FailureOf([&] {
                  ZentuCmdItemFactory::create_default_value_item("TYPE", keyword, Keywords());
              }).GetMessage(),
              "The value \"LINEAR\" is not allowed for item TYPE.\nValid options are: \n"
              "DENSITY, NODAL");
}

}  // namespace
