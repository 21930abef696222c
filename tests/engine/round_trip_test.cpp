// Write-then-read round trip: containers generated from a fixed seed are written as parameter
// files and read back through a schema that describes every generated item; the commands must
// come back in container order with their names, and per item kind the item names, classes,
// texts and the identifiers of the commands they refer to.
//
// The file syntax ends a two-line value (an integer list, or a list whose text holds a line feed)
// at a line holding '=', at END_, or at a single name after a value line that does not end with
// ','. So two-line items follow each other freely, except after a value whose last line ends with
// ','; and after a blank value line no list word is a single name. Values are also trimmed on
// reading, string items upper-case their text and a line holding '=' ends a two-line value, so
// generated texts have no blanks at their ends and two-line texts hold no '='.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <limits>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "ZentuCmd.h"
#include "ZentuCmdAutoItem.h"
#include "ZentuCmdContainer.h"
#include "ZentuCmdDefs.h"
#include "ZentuCmdEnumItem.h"
#include "ZentuCmdIntItem.h"
#include "ZentuCmdIoConfig.h"
#include "ZentuCmdItem.h"
#include "ZentuCmdItemDefs.h"
#include "ZentuCmdItemMetaData.h"
#include "ZentuCmdItem_Util.h"
#include "ZentuCmdMetaData.h"
#include "ZentuCmdParOutput.h"
#include "ZentuCmdRawStringItem.h"
#include "ZentuCmdReferenceItem.h"
#include "ZentuCmdScalarItem.h"
#include "ZentuCmdStringItem.h"
#include "ZentuParFileAdapter.h"

#include "engine_test_support.h"

namespace {

namespace fs = std::filesystem;
using ZentuCmdDefs::Cmd;
using ZentuCmdItemDefs::CmdItem;
using ZentuCmdItemDefs::DataType;

constexpr int kCases = 300;

// Keywords of the keyword items; TOPOLOGY and TOPO_FREE share prefixes that are ambiguous.
const std::array<const char*, 5> kDictionary = {"TOPOLOGY", "TOPO_FREE", "SHAPE", "SIZING", "BEAD"};

// Parts of list values: none holds '=', none starts a comment, none names an identifier.
const std::array<const char*, 8> kListWords = {"ALPHA", "beta",    "Gamma_2", "DELTA.5",
                                               "eps-x", "ZETA(3)", "Eta/1",   "THETA*"};

// Pieces of string texts, multi-byte characters and the file syntax's own characters included.
const std::array<const char*, 24> kTextPieces = {
    "A", "b", "X", "y", "Z", "c", "0", "7", " ", "_", "-",        ".",
    ",", ":", ";", "=", "#", "/", "(", ")", "+", "*", "\xC3\xA9", "\xC3\x9F"};

std::string Lower(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return text;
}

// A letter, then letters, digits or '_': after a value line without ',' such a line opens an item.
bool IsSingleName(const std::string& text) {
    return std::isalpha(static_cast<unsigned char>(text[0])) != 0 &&
           std::all_of(text.begin(), text.end(),
                       [](unsigned char c) { return std::isalnum(c) != 0 || c == '_'; });
}

// The writer's own test for laying a value out below its name.
bool TwoLine(const ZentuCmdItem& item) {
    return item.HasBreltList() || ZentuCmdItem_Util::has_item_list_with_char(item, '\n');
}

// Builds random containers and the schema that describes them, and counts what it made so that
// the test can tell that every case it is meant to cover did occur.
class JobGenerator {
  public:
    explicit JobGenerator(std::uint32_t seed) : random_(seed) {
        for (const auto& entry : autoKeywords_) {
            autoKeywordTexts_.push_back(entry.first);
        }
        std::sort(autoKeywordTexts_.begin(), autoKeywordTexts_.end());
        for (std::size_t value = 0; value < kDictionary.size(); ++value) {
            keywords_.keywords.Insert(kDictionary[value], static_cast<int>(value + 1));
        }
    }

    // Fills the empty container and returns a schema that describes every command and item in
    // it, without defaults, default commands or rules.
    ZentuCmdIoConfig Generate(ZentuCmdContainer& container) {
        ZentuCmdIoConfig schema;
        std::vector<std::pair<ZentuCmd*, ZentuCmdMetaData*>> commands;
        targets_.clear();
        for (std::size_t index = 0, count = Below(9); index < count; ++index) {
            const auto kind = static_cast<Cmd>(Below(ZentuCmdDefs::CMD_KIND_COUNT));
            const std::string& standard = ZentuCmdDefs::CMD_NAMES[static_cast<std::size_t>(kind)];
            const std::size_t variant = Below(3);
            const std::string keyword =
                std::array<std::string, 3>{standard, Lower(standard), standard + "_ALT"}[variant];
            ZentuCmd& cmd =
                OneIn(6) ? container.CreateCommand(kind, keyword)
                         : container.CreateCommand(
                               kind, keyword, (OneIn(2) ? "id_" : "ID_") + std::to_string(index));
            ZentuCmdMetaData& description = schema.AddCmdMetadata(variant == 1 ? standard : keyword,
                                                                  ZentuCmdMetaData(kind, false));
            description.AddItem(
                "ID_NAME", ZentuCmdItemMetaData(CmdItem::ID_NAME, DataType::STRING, "", "", 1));
            commands.emplace_back(&cmd, &description);
            if (cmd.HasItem(CmdItem::ID_NAME, 0)) {
                targets_.push_back(&cmd);
            }
        }
        for (const auto& [cmd, description] : commands) {
            Fill(*cmd, *description);
        }
        return schema;
    }

    // How many items of each flavour and of each awkward text shape were made.
    const std::map<std::string, std::size_t>& Seen() const { return seen_; }

  private:
    std::size_t Below(std::size_t bound) { return random_() % bound; }
    bool OneIn(std::size_t n) { return Below(n) == 0; }
    template <typename Array>
    const typename Array::value_type& AnyOf(const Array& values) {
        return values[Below(values.size())];
    }
    template <typename Item, typename... Args>
    static std::unique_ptr<ZentuCmdItem> New(Args&&... args) {
        return std::make_unique<Item>(std::forward<Args>(args)...);
    }
    std::string Cased(const std::string& text) { return OneIn(2) ? Lower(text) : text; }

    // count parts with a separator between each two.
    template <typename Part, typename Separator>
    static std::string Joined(std::size_t count, Part part, Separator separator) {
        std::string text = part();
        for (std::size_t index = 1; index < count; ++index) {
            text += separator(index);
            text += part();
        }
        return text;
    }

    // Plans the items in writing order, kinds ascending, keeping two-line items apart, then adds
    // them in a random interleaving of the kinds, so that insertion order differs from writing
    // order everywhere except within a kind.
    void Fill(ZentuCmd& cmd, ZentuCmdMetaData& description) {
        std::vector<CmdItem> kinds(Below(8));
        for (CmdItem& kind : kinds) {
            kind = static_cast<CmdItem>(1 + Below(ZentuCmdItemDefs::CMD_ITEM_KIND_COUNT - 1));
        }
        std::sort(kinds.begin(), kinds.end());
        std::vector<std::pair<CmdItem, std::unique_ptr<ZentuCmdItem>>> items;
        bool previousTwoLine = false;
        bool previousContinues = false;
        for (CmdItem kind : kinds) {
            std::unique_ptr<ZentuCmdItem> item;
            const Flavour* flavour = nullptr;
            while (item == nullptr || (previousContinues && TwoLine(*item))) {
                flavour = &AnyOf(flavours_);
                item =
                    flavour->make(ZentuCmdItemDefs::CMD_ITEM_NAMES[static_cast<std::size_t>(kind)] +
                                  flavour->suffix);
            }
            const std::string text = item->GetString();
            ++seen_[flavour->suffix];
            seen_["multi-line"] += text.find('\n') != std::string::npos ? 1 : 0;
            seen_["blank line"] += text.find("\n\n") != std::string::npos ? 1 : 0;
            seen_["empty two-line"] += TwoLine(*item) && text.empty() ? 1 : 0;
            seen_["adjacent two-line"] += previousTwoLine && TwoLine(*item) ? 1 : 0;
            previousTwoLine = TwoLine(*item);
            previousContinues = previousTwoLine && !text.empty() && text.back() == ',';
            ZentuCmdItemMetaData itemDescription(kind, flavour->type, "", "", 1);
            if (flavour->type == DataType::ENUM) {
                itemDescription.keywords = keywords_.keywords;
            }
            description.AddItem(std::string(item->GetName()), std::move(itemDescription));
            items.emplace_back(kind, std::move(item));
        }
        std::shuffle(kinds.begin(), kinds.end(), random_);
        for (CmdItem kind : kinds) {
            const auto next = std::find_if(items.begin(), items.end(), [kind](const auto& entry) {
                return entry.first == kind && entry.second != nullptr;
            });
            cmd.AddItem(kind, std::move(next->second));
        }
    }

    std::unique_ptr<ZentuCmdItem> Auto(const std::string& name, const std::string& text) const {
        return std::make_unique<ZentuCmdAutoItem>(name, text, autoKeywords_);
    }

    // None when no command has an identifier to refer to.
    std::unique_ptr<ZentuCmdItem> Referring(const std::string& name, bool byReferenceItem) {
        if (targets_.empty()) {
            return nullptr;
        }
        const ZentuCmd& target = *AnyOf(targets_);
        if (byReferenceItem) {
            return std::make_unique<ZentuCmdReferenceItem>(name, target);
        }
        auto item = Auto(name, Cased(target.Item(CmdItem::ID_NAME, 0).GetString()));
        item->AddReference(target);
        return item;
    }

    std::string Text() {
        std::string text;
        for (std::size_t length = Below(12); length > 0; --length) {
            text += AnyOf(kTextPieces);
        }
        const std::size_t first = text.find_first_not_of(' ');
        return first == std::string::npos
                   ? std::string()
                   : text.substr(first, text.find_last_not_of(' ') - first + 1);
    }

    int Integer() {
        if (OneIn(4)) {
            return AnyOf(std::array<int, 4>{std::numeric_limits<int>::min(),
                                            std::numeric_limits<int>::max(), 0, -1});
        }
        return OneIn(3) ? static_cast<int>(Below(100))
                        : static_cast<int>(static_cast<std::int64_t>(random_()) - 2147483648LL);
    }

    double Real() {
        if (OneIn(4)) {
            return AnyOf(
                std::array<double, 6>{0.1, -0.0, 1e300, -2.5e-300, 123456789.125, 1 / 3.0});
        }
        if (OneIn(3)) {
            return Integer() / 1000.0;
        }
        const double mantissa = static_cast<double>(random_()) + 0.5;
        return std::ldexp(mantissa, static_cast<int>(Below(121)) - 60) * (OneIn(2) ? -1.0 : 1.0);
    }

    // A full keyword or a prefix that only one keyword continues, in either case.
    std::string KeywordText() {
        const std::string word = AnyOf(kDictionary);
        for (;;) {
            const std::string text = word.substr(0, 1 + Below(word.size()));
            const auto continuing =
                std::count_if(kDictionary.begin(), kDictionary.end(), [&](const char* keyword) {
                    return std::string(keyword).compare(0, text.size(), text) == 0;
                });
            if (text == word || continuing == 1) {
                return Cased(text);
            }
        }
    }

    std::string SmallInteger() { return std::to_string(static_cast<int>(Below(400)) - 100); }

    std::string IntegerText() {
        if (OneIn(4)) {
            return "+" + std::to_string(Below(100000));
        }
        return OneIn(3) ? "00" + std::to_string(Below(10)) : std::to_string(Integer());
    }

    std::string RealText() {
        std::string text =
            (OneIn(3) ? "-" : "") + std::to_string(Below(1000)) + "." + std::to_string(Below(1000));
        return OneIn(3) ? text + (OneIn(2) ? "e-3" : "E+12") : text;
    }

    // An integer-list reading too when every part is an integer.
    std::string VectorText() {
        return Joined(
            3, [&] { return OneIn(2) ? SmallInteger() : RealText(); },
            [&](std::size_t) { return OneIn(2) ? "," : ", "; });
    }

    std::string ListText() {
        const bool multiLine = OneIn(2);
        bool afterBlankLine = false;
        return Joined(
            1 + Below(4),
            [&] {
                std::string word = AnyOf(kListWords);
                while (afterBlankLine && IsSingleName(word)) {
                    word = AnyOf(kListWords);
                }
                return word;
            },
            [&](std::size_t index) {
                afterBlankLine = multiLine && (index == 1 || OneIn(2)) && OneIn(4);
                if (afterBlankLine) {
                    return ",\n\n";
                }
                if (multiLine && OneIn(2)) {
                    return ",\n";
                }
                return OneIn(2) ? "," : ", ";
            });
    }

    // Single values, ranges and ranges with a step of either sign, at times across lines.
    std::string IntegerListText() {
        if (OneIn(10)) {
            return "";
        }
        const std::string text = Joined(
            1 + Below(12),
            [&] {
                std::string entry = SmallInteger();
                const std::size_t shape = Below(3);
                if (shape > 0) {
                    entry += "-" + SmallInteger();
                }
                if (shape > 1) {
                    const int step = 1 + static_cast<int>(Below(5));
                    entry += ":" + std::to_string(OneIn(3) ? -step : step);
                }
                return entry;
            },
            [&](std::size_t) { return OneIn(4) ? ",\n" : ","; });
        return OneIn(8) ? text + "," : text;
    }

    // The classes of generated items and, for automatically typed ones, the readings their
    // texts are made for; each suffix has a description of its own.
    struct Flavour {
        const char* suffix;
        DataType type;
        std::function<std::unique_ptr<ZentuCmdItem>(const std::string& name)> make;
    };
    using Name = const std::string&;
    const std::vector<Flavour> flavours_ = {
        {"_S", DataType::STRING, [this](Name n) { return New<ZentuCmdStringItem>(n, Text()); }},
        {"_RAW", DataType::RAW_STRING,
         [this](Name n) { return New<ZentuCmdRawStringItem>(n, Text()); }},
        {"_I", DataType::INTEGER, [this](Name n) { return New<ZentuCmdIntItem>(n, Integer()); }},
        {"_F", DataType::REAL, [this](Name n) { return New<ZentuCmdScalarItem>(n, Real()); }},
        {"_K", DataType::ENUM,
         [this](Name n) { return New<ZentuCmdEnumItem>(n, KeywordText(), keywords_.keywords); }},
        {"_AI", DataType::AUTO, [this](Name n) { return Auto(n, IntegerText()); }},
        {"_AF", DataType::AUTO, [this](Name n) { return Auto(n, RealText()); }},
        {"_AV", DataType::VECTOR3D, [this](Name n) { return Auto(n, VectorText()); }},
        {"_AK", DataType::AUTO,
         [this](Name n) { return Auto(n, Cased(AnyOf(autoKeywordTexts_))); }},
        {"_AL", DataType::LIST, [this](Name n) { return Auto(n, ListText()); }},
        {"_AB", DataType::BRELT_LIST, [this](Name n) { return Auto(n, IntegerListText()); }},
        {"_AR", DataType::REFERENCE, [this](Name n) { return Referring(n, false); }},
        {"_REF", DataType::REFERENCE, [this](Name n) { return Referring(n, true); }}};

    std::mt19937 random_;
    const ZentuCmdItemDefs::KeywordMap autoKeywords_ = ZentuCmdItemDefs::create_enum_map();
    std::vector<std::string> autoKeywordTexts_;
    ZentuCmdItemMetaData keywords_{CmdItem::PLACEHOLDER, DataType::ENUM, "", "", 1};
    std::vector<const ZentuCmd*> targets_;
    std::map<std::string, std::size_t> seen_;
};

std::string Contents(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

TEST(RoundTrip, WrittenContainersReadBackAsTheyWere) {
    zentu_test::LogCollector log;
    const zentu_test::ScratchDir dir("zentu_round_trip_");
    JobGenerator generator(20240611);
    for (int c = 0; c < kCases; ++c) {
        ZentuCmdContainer written;
        ZentuCmdContainer read;
        ZentuCmdIoConfig schema = generator.Generate(written);
        // A path per case: replacing one file again and again makes the file system flush it on
        // every close, which costs more than the whole test.
        const fs::path path = dir.Path() / ("case" + std::to_string(c) + ".par");
        ZentuCmdParOutput(path.wstring(), written, ZentuCmdDefs::get_default_cmd_names(),
                          ZentuCmdItemDefs::CMD_ITEM_NAMES)
            .Write(L"w");
        SCOPED_TRACE("case " + std::to_string(c) + ", written as:\n" + Contents(path));
        ASSERT_NO_THROW(ZentuParFileAdapter(path.wstring(), std::move(schema)).Parse(read));
        ASSERT_EQ(zentu_test::CmdLines(read), zentu_test::CmdLines(written, true));
        fs::remove(path);
    }
    for (const auto& line : log.Take()) {
        ADD_FAILURE() << "logged: " << line.message;
    }

    EXPECT_EQ(generator.Seen().size(), 17U);  // every flavour and the four text shapes
    for (const auto& [what, count] : generator.Seen()) {
        EXPECT_GE(count, what == "blank line" || what == "empty two-line" ? 5U : 20U) << what;
    }
}

}  // namespace
