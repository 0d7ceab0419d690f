#include "session/OptionCatalog.h"
#include "settings/OptionSchema.h"
#include "settings/Options.h"

#include <gtest/gtest.h>
#include <set>

using namespace vornhale::settings;
using namespace vornhale::session;

TEST(OptionCatalog, FindsATickByItsControlName)
{
    const OptionEntry* e = OptionCatalog::find("Check06");
    ASSERT_NE(e, nullptr);
    EXPECT_EQ(e->kind, OptionKind::Tick);
    EXPECT_EQ(e->caption, "作成する");
    EXPECT_EQ(e->frame, " Dupe List ");
    EXPECT_EQ(e->toolTip, "重複チェック・リスト");
    EXPECT_EQ(OptionCatalog::defaultOf(*e, "2031"), "0");
    EXPECT_EQ(e->key, "Check06");
    EXPECT_EQ(e->tab, "memo単複");
}

TEST(OptionCatalog, FindsAGroupMemberByIndexOrByItsWrittenName)
{
    const OptionEntry* byIndex = OptionCatalog::find("Option04", 2);
    const OptionEntry* byName = OptionCatalog::find("option04(2)");
    ASSERT_NE(byIndex, nullptr);
    EXPECT_EQ(byIndex, byName);
    EXPECT_EQ(byIndex->caption, "QSL発行済みの局");
    EXPECT_EQ(byIndex->toolTip, "すでにＱＳＬカード発行済みの局。");
    EXPECT_EQ(byIndex->controlName(), "Option04(2)");
    EXPECT_EQ(OptionCatalog::find("Option04", 4), nullptr);
    EXPECT_EQ(OptionCatalog::find("Check06", 0), nullptr);
    EXPECT_EQ(OptionCatalog::find("NoSuchThing"), nullptr);
}

TEST(OptionCatalog, GroupsListTheirMembersInOrder)
{
    const std::pair<const char*, std::size_t> groups[] = {
        {"Option2", 2},  {"Option05", 4}, {"Option02", 5}, {"Option6", 4}, {"Option7", 2},
        {"Option08", 2}, {"Option1", 1},  {"Option3", 2},  {"Option4", 5}, {"Option04", 4},
        {"Option01", 1}, {"Option10", 3}, {"Option5", 4},
    };
    for (const auto& [name, count] : groups) {
        const auto members = OptionCatalog::members(name);
        ASSERT_EQ(members.size(), count) << name;
        for (std::size_t i = 0; i < count; ++i) {
            EXPECT_EQ(members[i]->member, static_cast<int>(i)) << name;
        }
    }
    EXPECT_TRUE(OptionCatalog::members("Check06").empty());
}

TEST(OptionCatalog, CaptionsOfTheGroupsAreTheWindowsOwn)
{
    EXPECT_EQ(OptionCatalog::find("Option05", 3)->caption, "JA 局は J ST");
    EXPECT_EQ(OptionCatalog::find("Option02", 2)->caption,
              "Mng  > Call > Band > Mode > Date > Time");
    EXPECT_EQ(
        OptionCatalog::find("Option02", 4)->toolTip,
        "「memo単複」の中の「単数回 QSO ／ 複数回 QSO に 」「分けない」にレ点がある時のみ有効。");
    EXPECT_EQ(OptionCatalog::find("Option6", 3)->toolTip, "任意の文字列を指定・転記出来ます。");
    EXPECT_EQ(OptionCatalog::find("Option4", 3)->caption, "任 意 文字列");
    EXPECT_EQ(OptionCatalog::find("Option7", 1)->caption, "ｒｃｖｄ の 右側の２ 桁 ");
    EXPECT_EQ(OptionCatalog::find("Option10", 1)->caption,
              "MNGファイルを優先し、WEB検索で補完する");
    EXPECT_EQ(OptionCatalog::find("Option5", 1)->caption, "起動時 Top");
    // Three captions for four tabs: the last tab repeats the third.
    EXPECT_EQ(OptionCatalog::find("Option5", 3)->caption, "起動時Top");
}

TEST(OptionCatalog, OptionsWithoutAKeyAreNotStored)
{
    for (const char* name :
         {"Check13", "Check9", "txtRmks1", "txtRmks2", "txtOp_name", "Option01(0)"}) {
        const OptionEntry* e = OptionCatalog::find(name);
        ASSERT_NE(e, nullptr) << name;
        EXPECT_FALSE(e->stored()) << name;
    }
    EXPECT_EQ(OptionCatalog::defaultOf(*OptionCatalog::find("Check9"), "2031"), "");
    EXPECT_EQ(OptionCatalog::defaultOf(*OptionCatalog::find("Check16"), "2031"), "");
    EXPECT_EQ(OptionCatalog::defaultOf(*OptionCatalog::find("Check13"), "2031"), "1");
    EXPECT_EQ(OptionCatalog::find("Check16")->key, "Check16");
}

TEST(OptionCatalog, TextBoxesAndMenuTicksNameTheirKeys)
{
    const std::pair<const char*, const char*> keys[] = {
        {"txtYYYY", "YYYY"},           {"txtZone_moji", "Zone_moji"},
        {"txtProv_moji", "Prov_moji"}, {"txtNo_qsl_cty", "No_qsl_cty"},
        {"txtQSL_Q", "QSL_Q"},         {"txtQSL_S", "QSL_S"},
        {"Combo1", "GetMng_Interval"}, {"mnuMake_a2t", "Make_a2t"},
        {"mnuMake_t2a", "Make_t2a"},   {"Check7", "disp_top_SSTab"},
        {"Check8", "disp_top_SSTab"},  {"Check11", "disp_top_SSTab"},
    };
    for (const auto& [name, key] : keys) {
        ASSERT_NE(OptionCatalog::find(name), nullptr) << name;
        EXPECT_EQ(OptionCatalog::find(name)->key, key) << name;
    }
    EXPECT_EQ(OptionCatalog::find("mnuMake_a2t")->kind, OptionKind::MenuTick);
    EXPECT_EQ(OptionCatalog::find("mnuMake_a2t")->caption,
              "変換時に zLog の ＊．.all  から ＊．txt を作成する。");
    EXPECT_EQ(OptionCatalog::defaultOf(*OptionCatalog::find("txtYYYY"), "2031"), "2031");
    EXPECT_EQ(OptionCatalog::defaultOf(*OptionCatalog::find("txtQSL_S"), "2031"), "*");
}

TEST(OptionCatalog, StoredDefaultsAgreeWithTheSettingsDefaults)
{
    const Options defaults = Options::defaults();
    std::set<std::string> seen;
    for (const OptionEntry& e : OptionCatalog::all()) {
        if (!e.stored() || e.name == "Check16") {
            continue;
        }
        seen.insert(std::string(e.key));
        const std::string expected = e.key == "YYYY" ? defaults.value("YYYY") : OptionCatalog::defaultOf(e, "2031");
        EXPECT_EQ(defaults.value(e.key), expected) << e.controlName();
    }
    EXPECT_GT(seen.size(), 40u);
}

TEST(OptionCatalog, EveryOptionHasAKeyOfItsKindInTheSettingsSchema)
{
    for (const OptionEntry& e : OptionCatalog::all()) {
        const SchemaKey* key = OptionCatalog::schemaKey(e);
        if (e.kind == OptionKind::Button) {
            EXPECT_EQ(key, nullptr) << e.controlName();
            continue;
        }
        ASSERT_NE(key, nullptr) << e.controlName();
        switch (e.kind) {
        case OptionKind::Tick:
        case OptionKind::MenuTick:
            // The start-tab ticks share one small number.
            EXPECT_TRUE(key->kind == ValueKind::Tick ||
                        key->kind == ValueKind::Number)
                << e.controlName();
            break;
        case OptionKind::GroupMember:
            EXPECT_EQ(key->kind, ValueKind::Group) << e.controlName();
            EXPECT_EQ(static_cast<int>(OptionCatalog::members(e.name).size()), key->members)
                << e.controlName();
            break;
        case OptionKind::Text:
            EXPECT_EQ(key->kind, ValueKind::Text) << e.controlName();
            break;
        case OptionKind::Button:
            break;
        }
    }
}

TEST(OptionCatalog, EveryControlNameIsUnique)
{
    std::set<std::string> names;
    for (const OptionEntry& e : OptionCatalog::all()) {
        EXPECT_TRUE(names.insert(e.controlName()).second) << e.controlName();
    }
}

TEST(OptionCatalog, SplitMemberReadsOnlyAWellFormedIndex)
{
    EXPECT_EQ(OptionCatalog::splitMember("Option04(3)"),
              std::make_pair(std::string_view("Option04"), 3));
    EXPECT_EQ(OptionCatalog::splitMember("Option04"),
              std::make_pair(std::string_view("Option04"), -1));
    EXPECT_EQ(OptionCatalog::splitMember("Option04(x)").second, -1);
    EXPECT_EQ(OptionCatalog::splitMember("Option04(-1)").second, -1);
}
