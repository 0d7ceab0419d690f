#include "settings/OptionSchema.h"
#include "settings/SettingsFiles.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>

using namespace vornhale::settings;

TEST(OptionSchema, EachFileNamesAKeyOnlyOnce)
{
    std::map<SettingsFileId, std::set<std::string>> seen;
    for (const SchemaKey& k : optionSchema()) {
        EXPECT_TRUE(seen[k.file].insert(k.key).second) << k.key;
    }
}

TEST(OptionSchema, TheOptionFileIsWrittenInTheOrderOfTheTable)
{
    const std::vector<std::string> keys = SettingsFiles::optionFileKeys();
    ASSERT_GE(keys.size(), 90u);
    EXPECT_EQ(keys.front(), "Option2");
    EXPECT_EQ(keys[1], "QSL_Q");
    EXPECT_EQ(keys.back(), "Rmks2_cfg_len");
    // The mode table comes after the key of the "Main" section and before the widths.
    const auto at = [&](const std::string& key) {
        return std::find(keys.begin(), keys.end(), key) - keys.begin();
    };
    EXPECT_LT(at("exe_rec"), at("mode_1_0_txt"));
    EXPECT_LT(at("mode_10_chk"), at("Rmks1_cfg_len"));
}

TEST(OptionSchema, AFirstStartTakesTodayAndTheValuesOfTheTable)
{
    std::map<std::string, std::string> d;
    for (auto& [key, value] : SettingsFiles::optionDefaults("20310417")) {
        d[key] = value; // a later value wins, as it does when the defaults are applied
    }
    EXPECT_EQ(d["YYYY"], "2031");
    EXPECT_EQ(d["End_date"], "20310417");
    EXPECT_EQ(d["Option4"], "2");
    EXPECT_EQ(d["Check13"], "1");
    EXPECT_EQ(d["No_QSL_moji"], "N");
    EXPECT_EQ(d["No_QSL_moji_set_flag"], "2");
    EXPECT_EQ(d.count("Check16"), 0u);
    EXPECT_EQ(d.count("mode_1_0_txt"), 0u);
    EXPECT_EQ(d.count("zlog_dat_dir"), 0u);
}

TEST(OptionSchema, AValueMustFitItsKind)
{
    const SchemaKey* tick = findSchemaKey("Check06");
    ASSERT_NE(tick, nullptr);
    EXPECT_TRUE(valueFits(*tick, "0"));
    EXPECT_TRUE(valueFits(*tick, "1"));
    EXPECT_FALSE(valueFits(*tick, "2"));
    EXPECT_FALSE(valueFits(*tick, ""));

    const SchemaKey* group = findSchemaKey("option04");
    ASSERT_NE(group, nullptr);
    EXPECT_EQ(group->members, 4);
    EXPECT_TRUE(valueFits(*group, "3"));
    EXPECT_FALSE(valueFits(*group, "4"));
    EXPECT_FALSE(valueFits(*group, "-1"));
    EXPECT_FALSE(valueFits(*group, "1x"));

    const SchemaKey* number = findSchemaKey("disp_top_SSTab");
    ASSERT_NE(number, nullptr);
    EXPECT_TRUE(valueFits(*number, "3"));
    EXPECT_FALSE(valueFits(*number, "40000"));

    const SchemaKey* text = findSchemaKey("YYYY");
    ASSERT_NE(text, nullptr);
    EXPECT_TRUE(valueFits(*text, "anything at all"));
}

TEST(OptionSchema, KeysAreFoundInTheFileThatStoresThem)
{
    EXPECT_EQ(findAnySchemaKey("inet_flag")->file, SettingsFileId::Environment);
    EXPECT_EQ(findAnySchemaKey("mng_search_url")->file, SettingsFileId::Options);
    EXPECT_EQ(findAnySchemaKey("Zone_moji_save")->file, SettingsFileId::ZoneMark);
    EXPECT_EQ(findAnySchemaKey("Check13")->file, SettingsFileId::None);
    EXPECT_EQ(findAnySchemaKey("hamlog_hdb_dir_FileDateTime_QSO")->sectionName,
              "Sansyou_files QSO");
    EXPECT_EQ(findAnySchemaKey("no_such_key"), nullptr);
}
