// The duplicate list and the QSOBank export through the command line: whole runs over the
// bundled sample logs (and real zLog logs where they are at hand), compared byte for byte with
// the reviewed files in tests/data/golden. VORNHALE_UPDATE_GOLDEN=1 rewrites them for review.

#include "readers/InputKinds.h"
#include "support/TestSupport.h"
#include "text/Chars.h"

#include <algorithm>
#include <filesystem>
#include <gtest/gtest.h>
#include <optional>
#include <set>
#include <string>

using namespace vornhale;
namespace fs = std::filesystem;

namespace {

std::string quote(const std::string& s)
{
    return "'" + s + "'";
}

/// A log of the cases: under data/sample, or "realdata:<path>".
std::optional<fs::path> sourceOf(const std::string& log)
{
    if (log.rfind("realdata:", 0) == 0) {
        return test::realData(log.substr(9));
    }
    return test::sourceDir() / "data" / "sample" / log;
}

struct ToolCase
{
    const char* name;
    const char* log;
    const char* args;
};

/// Copies the log into a fresh folder as CONTEST.<ext>, so that the paths are alike.
fs::path placeLog(const test::TempDir& dir, const fs::path& source)
{
    const fs::path log = dir / ("CONTEST" + source.extension().string());
    fs::copy_file(source, log);
    return log;
}

int convert(const test::TempDir& dir, const fs::path& log, const std::string& args,
            std::string* output)
{
    return test::runCommand(quote(test::cliPath().string()) + " convert --home " +
                                quote((dir / "home").string()) + " " + args + " " +
                                quote(log.string()),
                            output);
}

const ToolCase kDupCases[] = {
    {"dup_all_bands", "SAMPLE2026.ALL", "--set Check06=1"},
    {"dup_all_frequency", "SAMPLE2026.ALL", "--set Check06=1 --set Check17=1"},
    {"dup_txt", "SAMPLE2026.TXT", "--year 2026 --set Check06=1"},
    {"dup_realdata_allja1_zlo", "realdata:zlog/allja1_qxsl_fixture.ZLO", "--set Check06=1"},
};

class DuplicateListGolden : public ::testing::TestWithParam<ToolCase>
{
};

void PrintTo(const ToolCase& c, std::ostream* os)
{
    *os << c.name;
}

} // namespace

TEST_P(DuplicateListGolden, TheDupFileMatchesItsReviewedCopy)
{
    const ToolCase& c = GetParam();
    const auto source = sourceOf(c.log);
    if (!source) {
        GTEST_SKIP() << "../shared/realdata is not beside the source tree";
    }
    test::TempDir dir;
    const fs::path log = placeLog(dir, *source);
    std::string output;
    ASSERT_EQ(convert(dir, log, c.args, &output), 0) << output;
    ASSERT_TRUE(fs::exists(dir / "CONTEST.dup")) << output;
    EXPECT_EQ(test::compareGolden(test::testData("golden") / c.name / "CONTEST.dup",
                                  test::readBytes(dir / "CONTEST.dup")),
              "");
}

INSTANTIATE_TEST_SUITE_P(Samples, DuplicateListGolden, ::testing::ValuesIn(kDupCases),
                         [](const auto& info) { return std::string(info.param.name); });

TEST(DuplicateListRun, LeavesTheResultFilesAsTheyAreWithoutTheList)
{
    test::TempDir dir;
    const fs::path log = placeLog(dir, test::sourceDir() / "data" / "sample" / "SAMPLE2026.ALL");
    std::string output;
    ASSERT_EQ(convert(dir, log, "--set Check06=1", &output), 0) << output;
    for (const char* file : {"CONTEST_hn.csv", "CONTEST_cn.csv"}) {
        EXPECT_EQ(test::readBytes(dir / file),
                  test::readBytes(test::testData("golden") / "all_defaults" / file))
            << file;
    }
}

TEST(DuplicateListRun, IsNotWrittenWithoutCheck06AndAFormerListStays)
{
    test::TempDir dir;
    const fs::path log = placeLog(dir, test::sourceDir() / "data" / "sample" / "SAMPLE2026.ALL");
    std::string output;
    ASSERT_EQ(convert(dir, log, "--set Check06=0", &output), 0) << output;
    EXPECT_FALSE(fs::exists(dir / "CONTEST.dup"));
    test::writeBytes(dir / "CONTEST.dup", "kept");
    ASSERT_EQ(convert(dir, log, "--set Check06=0", &output), 0) << output;
    EXPECT_EQ(test::readBytes(dir / "CONTEST.dup"), "kept");
}

TEST(DuplicateListRun, LeavesNoWorkingFileOfItsOwnBehind)
{
    test::TempDir dir;
    const fs::path log = placeLog(dir, test::sourceDir() / "data" / "sample" / "SAMPLE2026.ALL");
    std::string output;
    ASSERT_EQ(convert(dir, log, "--keep-work --set Check06=1", &output), 0) << output;
    // Kept on request: the list's own working files are there.
    EXPECT_TRUE(fs::exists(dir / "home" / "Work" / "zlog_o14.txt"));
    ASSERT_EQ(convert(dir, log, "--set Check06=1", &output), 0) << output;
    for (const auto& entry : fs::directory_iterator(dir / "home" / "Work")) {
        const std::string name = entry.path().filename().string();
        EXPECT_FALSE(name.rfind("zlog_", 0) == 0) << name;
    }
}

// The list follows every input kind: after a run with `Check06` only the two final files and
// the list stand beside the log. The kinds whose sample logs are at hand run here.
TEST(DuplicateListRun, OnlyTheFinalFilesAndTheListStayBesideTheLogForEveryKind)
{
    struct Sample
    {
        std::string_view kind;
        std::string log;
        std::string args;
    };
    const std::vector<Sample> samples = {
        {"all", "SAMPLE2026.ALL", ""},
        {"txt", "SAMPLE2026.TXT", "--year 2026"},
        {"zlo", "realdata:zlog/allja1_qxsl_fixture.ZLO", ""},
        {"zlox", "realdata:zlog/allja1_qxsl_fixture.ZLOX", ""},
        {"cbr", (test::testData("cabrillo") / "SAMPLE.CBR").string(), ""},
        {"adi", (test::testData("adif") / "SAMPLE.ADI").string(), ""},
    };
    int ran = 0;
    for (const readers::InputKindRow& row : readers::inputKinds()) {
        const auto sample = std::find_if(samples.begin(), samples.end(),
                                         [&](const Sample& s) { return s.kind == row.typeWord; });
        if (sample == samples.end()) {
            continue;
        }
        std::optional<fs::path> source = sample->log.front() == '/'
                                             ? std::optional(fs::path(sample->log))
                                             : sourceOf(sample->log);
        if (!source || !fs::exists(*source)) {
            continue;
        }
        SCOPED_TRACE(std::string(row.typeWord));
        test::TempDir dir;
        const fs::path log = placeLog(dir, *source);
        std::string output;
        ASSERT_EQ(
            convert(dir, log,
                    "--type " + std::string(row.typeWord) + " --set Check06=1 " + sample->args,
                    &output),
            0)
            << output;
        std::set<std::string> beside;
        for (const auto& entry : fs::directory_iterator(dir.path())) {
            beside.insert(entry.path().filename().string());
        }
        const std::string ext = log.extension().string();
        std::set<std::string> expected = {"CONTEST" + ext, "CONTEST_hn.csv", "CONTEST_cn.csv",
                                          "CONTEST.dup", "home"};
        if (row.kind == readers::InputKind::Cbr) {
            // A Cabrillo log also leaves its zLog .TXT form, made at the end of every run.
            expected.insert("CONTEST_cbr2zlogt.txt");
        }
        EXPECT_EQ(beside, expected);
        ++ran;
    }
    EXPECT_GE(ran, 2);
}

namespace {

const ToolCase kQsoBankCases[] = {
    {"qsobank_all", "SAMPLE2026.ALL", ""},
    {"qsobank_txt", "SAMPLE2026.TXT", ""},
    {"qsobank_realdata_allja1_zlo", "realdata:zlog/allja1_qxsl_fixture.ZLO", ""},
};

class QsoBankGolden : public ::testing::TestWithParam<ToolCase>
{
};

int qsobank(const test::TempDir& dir, const fs::path& log, const std::string& args,
            std::string* output)
{
    return test::runCommand(quote(test::cliPath().string()) + " qsobank --home " +
                                quote((dir / "home").string()) + " " + args + " " +
                                quote(log.string()),
                            output);
}

// A .TXT log carries no year: the stored one stands for it.
void storeYear(const test::TempDir& dir)
{
    ASSERT_EQ(test::runCommand(quote(test::cliPath().string()) + " settings --home " +
                               quote((dir / "home").string()) + " set YYYY=2026 2>/dev/null"),
              0);
}

} // namespace

TEST_P(QsoBankGolden, TheXmlMatchesItsReviewedCopyAndItsPathIsPrinted)
{
    const ToolCase& c = GetParam();
    const auto source = sourceOf(c.log);
    if (!source) {
        GTEST_SKIP() << "../shared/realdata is not beside the source tree";
    }
    test::TempDir dir;
    const fs::path log = placeLog(dir, *source);
    storeYear(dir);
    std::string output;
    ASSERT_EQ(qsobank(dir, log, c.args, &output), 0) << output;
    // The path is the last line printed (notes of the start go before it).
    const std::string path = (dir / "CONTEST.QSOBank.xml").string() + "\n";
    ASSERT_GE(output.size(), path.size());
    EXPECT_EQ(output.substr(output.size() - path.size()), path);
    EXPECT_EQ(test::compareGolden(test::testData("golden") / c.name / "CONTEST.QSOBank.xml",
                                  test::readBytes(dir / "CONTEST.QSOBank.xml")),
              "");
}

INSTANTIATE_TEST_SUITE_P(Samples, QsoBankGolden, ::testing::ValuesIn(kQsoBankCases),
                         [](const auto& info) { return std::string(info.param.name); });

TEST(QsoBankCommand, LeavesNoResultFileBesideTheLog)
{
    test::TempDir dir;
    const fs::path log = placeLog(dir, test::sourceDir() / "data" / "sample" / "SAMPLE2026.ALL");
    std::string output;
    ASSERT_EQ(qsobank(dir, log, "", &output), 0) << output;
    std::set<std::string> beside;
    for (const auto& entry : fs::directory_iterator(dir.path())) {
        beside.insert(entry.path().filename().string());
    }
    EXPECT_EQ(beside, (std::set<std::string>{"CONTEST.ALL", "CONTEST.QSOBank.xml", "home"}));
}

TEST(QsoBankCommand, AnInputItDoesNotReadAgainNeedsTheLinesOfAFormerConversion)
{
    const auto source = test::realData("adif/urbancamo_fle_rsgb_contest.adi");
    if (!source) {
        GTEST_SKIP() << "../shared/realdata is not beside the source tree";
    }
    test::TempDir dir;
    const fs::path log = placeLog(dir, *source);
    std::string output;
    EXPECT_EQ(qsobank(dir, log, "--type adi", &output), 1) << output;
    EXPECT_NE(output.find("zlog_1.txt がありません"), std::string::npos) << output;
    EXPECT_FALSE(fs::exists(dir / "CONTEST.QSOBank.xml"));

    // The lines a conversion left are exported as they stand.
    ASSERT_EQ(convert(dir, log, "--keep-work --type adi", &output), 0) << output;
    const std::string lines = test::readBytes(dir / "home" / "Work" / "zlog_1.txt");
    ASSERT_EQ(qsobank(dir, log, "--type adi", &output), 0) << output;
    const std::string xml = test::readBytes(dir / "CONTEST.QSOBank.xml");
    EXPECT_EQ(test::readBytes(dir / "home" / "Work" / "zlog_1.txt"), lines);
    const auto records = [](const std::string& s) {
        std::size_t n = 0;
        for (auto at = s.find("<qso_record>"); at != std::string::npos;
             at = s.find("<qso_record>", at + 1)) {
            ++n;
        }
        return n;
    };
    std::size_t lineCount = 0;
    for (const char ch : lines) {
        lineCount += ch == '\n' ? 1 : 0;
    }
    EXPECT_EQ(records(xml), lineCount);
}

TEST(QsoBankCommand, RefusesAnUnknownType)
{
    test::TempDir dir;
    const fs::path log = placeLog(dir, test::sourceDir() / "data" / "sample" / "SAMPLE2026.ALL");
    std::string output;
    EXPECT_EQ(qsobank(dir, log, "--type nothing", &output), 2) << output;
}
