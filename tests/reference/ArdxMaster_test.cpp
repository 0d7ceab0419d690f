#include "failure/Failure.h"
#include "reference/ArdxMaster.h"
#include "support/TestSupport.h"
#include "text/SjisCodec.h"

#include <functional>
#include <gtest/gtest.h>
#include <map>
#include <set>

using namespace vornhale;
using reference::ArdxMaster;

namespace {

std::string crlf(const std::vector<std::string>& lines)
{
    std::string s;
    for (const auto& l : lines) {
        s += l + "\r\n";
    }
    return s;
}

std::string pad(std::string s, std::size_t n)
{
    s.resize(n, ' ');
    return s;
}

/// A line of the working files: quote, code in 24 columns, name in 30.
std::string rec(const std::string& code, const std::string& name)
{
    return "'" + pad(code, 24) + pad(name, 30);
}

int failureNumber(const std::function<void()>& f)
{
    try {
        f();
    } catch (const failure::Failure& e) {
        return e.number();
    }
    return 0;
}

struct Folders
{
    test::TempDir dir;
    std::filesystem::path zlog = dir / "zlog";
    std::filesystem::path work = dir / "work";
    Folders()
    {
        std::filesystem::create_directories(zlog);
        std::filesystem::create_directories(work);
    }
    void files(const std::vector<std::string>& ardx, const std::vector<std::string>& arrl10)
    {
        test::writeBytes(zlog / "ARDX.DAT", crlf(ardx));
        test::writeBytes(zlog / "ARRL10.DAT", crlf(arrl10));
    }
    ArdxMaster build()
    {
        ArdxMaster m;
        base::Trace trace;
        m.ardx_sep(zlog, work, trace);
        return m;
    }
};

} // namespace

TEST(ArdxMaster, BuildsTheWorkingFilesAndTheMasterByteForByte)
{
    Folders f;
    f.files({"ardx.dat test", "Alpha                         AL", "  AL,ALP;", "Six Letters Here",
             "  AAAAAA;", "Bravo", "  BRAVOO;", "end of file ardx.dat", "Never Read", "  NEVER;"},
            {"arrl10.dat test", "Alpha                         AL", "  AL;", "Bravo Two",
             "  BRAVOO;", "end of file arrl10.dat"});
    const ArdxMaster m = f.build();

    EXPECT_EQ(test::readBytes(f.work / "ardx_dat.001"),
              "'AL                      Alpha                         \r\n"
              "'ALP                     Alpha                         \r\n"
              "'AAAAAA                  Six Letters Here              \r\n"
              "'BRAVOO                  Bravo                         \r\n"
              "'AL                      Alpha                         \r\n"
              "'BRAVOO                  Bravo Two                     \r\n");
    EXPECT_EQ(test::readBytes(f.work / "ardx_dat.002"),
              crlf({rec("AAAAAA", "Six Letters Here"), rec("AL", "Alpha"), rec("AL", "Alpha"),
                    rec("ALP", "Alpha"), rec("BRAVOO", "Bravo"), rec("BRAVOO", "Bravo Two")}));
    EXPECT_EQ(
        test::readBytes(f.zlog / "ardx_dat.mas"),
        text::encodeSjis("ｺｰﾙｻｲﾝ|__氏  名___|ｺｰﾄﾞ_|26___Ｑ  Ｔ  Ｈ____________|____備    考____"
                         "____________________________________\r\n") +
            crlf({rec("AAAAAA", "Six Letters Here"), rec("AL", "Alpha"), rec("ALP", "Alpha"),
                  rec("BRAVOO", "Bravo"), rec("BRAVOO", "Bravo Two")}));
    EXPECT_FALSE(std::filesystem::exists(f.work / "ardx_dat.mas"));

    // The heading and the first data line are passed over on loading.
    EXPECT_EQ(m.Ardx_kazu(), 4u);
    EXPECT_EQ(m.Ardx_code(), (std::vector<std::string>{"AL", "ALP", "BRAVOO", "BRAVOO"}));
    EXPECT_EQ(m.Ardx_name(), (std::vector<std::string>{"Alpha", "Alpha", "Bravo", "Bravo Two"}));
    EXPECT_TRUE(m.loaded());
}

TEST(ArdxMaster, ACodeInBothFilesStandsOnceWhenEqualAndTwiceWhenTheNamesDiffer)
{
    Folders f;
    f.files(
        {"t", "First", "  ZZ;", "Same", "  SAME;", "Differs", "  DIFF;", "end of file ardx.dat"},
        {"t", "Same", "  SAME;", "Differs Too", "  DIFF;", "end of file arrl10.dat"});
    f.build();
    const auto lines = test::readSjisLines(f.zlog / "ardx_dat.mas");
    EXPECT_EQ(std::count(lines.begin(), lines.end(), rec("SAME", "Same")), 1);
    EXPECT_EQ(std::count(lines.begin(), lines.end(), rec("DIFF", "Differs")), 1);
    EXPECT_EQ(std::count(lines.begin(), lines.end(), rec("DIFF", "Differs Too")), 1);
}

TEST(ArdxMaster, TheFirstRecordInSortedOrderIsMissingFromTheLookup)
{
    Folders f;
    f.files({"t", "Lost", "  AAAAAA;", "Kept", "  BBBBBB;", "end of file ardx.dat"},
            {"t", "end of file arrl10.dat"});
    const ArdxMaster m = f.build();
    const auto lines = test::readSjisLines(f.zlog / "ardx_dat.mas");
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_EQ(lines[1], rec("AAAAAA", "Lost"));
    EXPECT_EQ(m.get_ardx("AAAAAA"), "");
    EXPECT_EQ(m.get_ardx("BBBBBB"), "Kept");
    EXPECT_EQ(m.Ardx_kazu(), 1u);
}

TEST(ArdxMaster, OnlySixColumnCodesCanMatch)
{
    Folders f;
    f.files({"t", "Dropped", "  AAAAAA;", "Two Letters", "  AL;", "Six Letters", "  ABCDEF;",
             "Seven Letters", "  ABCDEFG;", "Lower Case", "  lower6;", "end of file ardx.dat"},
            {"t", "end of file arrl10.dat"});
    const ArdxMaster m = f.build();
    EXPECT_EQ(m.get_ardx("AL"), "");
    EXPECT_EQ(m.get_ardx("AL    "), "");
    EXPECT_EQ(m.get_ardx("ABCDEF"), "Six Letters");
    EXPECT_EQ(m.get_ardx("abcdef"), "Six Letters");
    // The exchange is cut at 6 columns; a seven-letter code was cut at 6 on loading.
    EXPECT_EQ(m.get_ardx("ABCDEFXYZ"), "Six Letters");
    EXPECT_EQ(m.get_ardx("LOWER6"), "Lower Case");
    EXPECT_EQ(m.get_ardx(" ABCDE"), "");
    EXPECT_EQ(m.get_ardx(""), "");
}

TEST(ArdxMaster, TheFirstEqualCodeWinsInUpperCase)
{
    Folders f;
    f.files({"t", "Dropped", "  AAAAAA;", "Upper", "  CODE66;", "Lower", "  code66;",
             "end of file ardx.dat"},
            {"t", "end of file arrl10.dat"});
    const ArdxMaster m = f.build();
    EXPECT_EQ(m.get_ardx("Code66"), "Upper");
}

TEST(ArdxMaster, AGroupEndsAfterElevenCodeLinesAndTheNextLineIsAName)
{
    Folders f;
    std::vector<std::string> ardx = {"t", "Long Group"};
    for (int i = 1; i <= 11; ++i) {
        ardx.push_back("  C" + std::to_string(10 + i) + ",");
    }
    ardx.insert(ardx.end(), {"  TWELVE;", "  NEXT;", "end of file ardx.dat"});
    f.files(ardx, {"t", "end of file arrl10.dat"});
    f.build();
    const auto lines = test::readSjisLines(f.work / "ardx_dat.001");
    ASSERT_EQ(lines.size(), 12u);
    EXPECT_EQ(lines[0], rec("C11", "Long Group"));
    EXPECT_EQ(lines[10], rec("C21", "Long Group"));
    EXPECT_EQ(lines[11], rec("NEXT", "  TWELVE;"));
}

TEST(ArdxMaster, CodeLinesAreTrimmedAndReadOverOneHundredPositions)
{
    Folders f;
    f.files({"t", "Name", "   A1 , B2;  ", "Other", "  OPEN,LEFT", "  CLOSED;", "Far",
             "  " + std::string(103, 'X') + ",Y;", "  FAR;", "Empty", "  ;",
             "end of file ardx.dat"},
            {"t", "end of file arrl10.dat"});
    f.build();
    EXPECT_EQ(
        test::readSjisLines(f.work / "ardx_dat.001"),
        (std::vector<std::string>{rec("A1 ", "Name"), rec(" B2", "Name"), rec("OPEN", "Other"),
                                  rec("CLOSED", "Other"), rec("FAR", "Far"), rec("", "Empty")}));
}

TEST(ArdxMaster, NameIsTheFirstThirtyCharacters)
{
    Folders f;
    f.files(
        {"t", "A name that is longer than thirty characters", "  LONG;", "end of file ardx.dat"},
        {"t", "end of file arrl10.dat"});
    f.build();
    EXPECT_EQ(
        test::readSjisLines(f.work / "ardx_dat.001"),
        (std::vector<std::string>{"'LONG                    A name that is longer than thi"}));
}

TEST(ArdxMaster, EndLinesOfEachFile)
{
    Folders f;
    // ARDX.DAT does not end at the ARRL10 end line; ARRL10.DAT ends at either.
    f.files({"t", "end of file arrl10.dat", "  ZZ;", "end of file ardx.dat"},
            {"t", "Kept", "  KK;", "end of file ardx.dat", "Never", "  NV;"});
    f.build();
    EXPECT_EQ(test::readSjisLines(f.work / "ardx_dat.001"),
              (std::vector<std::string>{rec("ZZ", "end of file arrl10.dat"), rec("KK", "Kept")}));
}

TEST(ArdxMaster, FilesWithoutEndLineAreReadToTheirEnd)
{
    Folders f;
    f.files({"t", "One", "  ONE;"}, {"t", "Two", "  TWO;"});
    f.build();
    EXPECT_EQ(test::readSjisLines(f.work / "ardx_dat.001"),
              (std::vector<std::string>{rec("ONE", "One"), rec("TWO", "Two")}));
}

TEST(ArdxMaster, MissingFilesTakeTheFailurePathAtTheOpen)
{
    Folders f;
    EXPECT_EQ(failureNumber([&] { f.build(); }), failure::FileNotFound);
    test::writeBytes(f.zlog / "ARDX.DAT", crlf({"t", "One", "  ONE;"}));
    EXPECT_EQ(failureNumber([&] { f.build(); }), failure::FileNotFound);
}

TEST(ArdxMaster, CodeLinesPastTheEndAndAnEmptyMasterFail)
{
    Folders f;
    f.files({"t", "Name without codes"}, {"t"});
    EXPECT_EQ(failureNumber([&] { f.build(); }), failure::InputPastEnd);
    f.files({"t"}, {"t"});
    ArdxMaster m;
    base::Trace trace;
    EXPECT_EQ(failureNumber([&] { m.ardx_sep(f.zlog, f.work, trace); }),
              failure::InputPastEnd);
    EXPECT_FALSE(m.loaded());
}

TEST(ArdxMaster, WritesItsTraceLines)
{
    Folders f;
    f.files({"t", "One", "  ONE;"}, {"t", "Two", "  TWO;"});
    std::filesystem::path tracePath;
    {
        base::Trace trace(f.dir / "Error_Log");
        tracePath = trace.path();
        ArdxMaster m;
        m.ardx_sep(f.zlog, f.work, trace);
    }
    EXPECT_EQ(test::readSjisLines(tracePath),
              (std::vector<std::string>{"Private sub ardx_sep()_1", "Private sub ardx_sep()_2",
                                        "Private sub ardx_sep()_3_sort", "Public Sub sort_()",
                                        "Private sub ardx_sep()_4"}));
}

namespace {

/// Checks what every master built from real files must hold and returns its data lines.
std::vector<std::string> checkMaster(const std::filesystem::path& mas, const ArdxMaster& m)
{
    const std::string bytes = test::readBytes(mas);
    const std::string heading = text::encodeSjis(reference::kArdxMasHeading) + "\r\n";
    EXPECT_EQ(bytes.substr(0, heading.size()), heading);
    auto lines = test::readSjisLines(mas);
    lines.erase(lines.begin());
    for (std::size_t i = 0; i < lines.size(); ++i) {
        EXPECT_EQ(lines[i].size(), 55u) << lines[i];
        if (i > 0) {
            EXPECT_LE(lines[i - 1].substr(0, 10), lines[i].substr(0, 10));
            EXPECT_NE(lines[i - 1], lines[i]);
        }
    }
    EXPECT_EQ(m.Ardx_kazu(), lines.size() - 1);
    return lines;
}

} // namespace

TEST(ArdxMaster, RealZlogFiles)
{
    const auto ardx = test::realData("zlog/resource/ARDX.DAT");
    const auto arrl10 = test::realData("zlog/resource/ARRL10.DAT");
    if (!ardx || !arrl10) {
        GTEST_SKIP() << "zLog's ARDX.DAT and ARRL10.DAT are not in ../shared/realdata";
    }
    Folders f;
    std::filesystem::copy_file(*ardx, f.zlog / "ARDX.DAT");
    std::filesystem::copy_file(*arrl10, f.zlog / "ARRL10.DAT");
    const ArdxMaster m = f.build();
    const auto lines = checkMaster(f.zlog / "ardx_dat.mas", m);

    std::map<std::string, int> count;
    for (const auto& l : lines) {
        ++count[l];
    }
    // In both files with the same name: once. Only in ARRL10.DAT: once as well.
    EXPECT_EQ(count[rec("AL", "Alabama (W4)")], 1);
    EXPECT_EQ(count[rec("CONN", "Connecticut (W1)")], 1);
    EXPECT_EQ(count[rec("AK", "Alaska (KL7)")], 1);
    EXPECT_EQ(count[rec("DF", "Ciudad de Mexico (XE1)")], 1);
    // Every code of the real files has fewer than six letters: none is found.
    for (const std::string& code : m.Ardx_code()) {
        EXPECT_LT(code.size(), 6u);
        EXPECT_EQ(m.get_ardx(code), "") << code;
    }
}

TEST(ArdxMaster, BundledFilesAreShiftJisWithCrLfAndFoldIntoOneListOfCodes)
{
    const auto seed = test::sourceDir() / "data" / "seed";
    for (const char* name : {"ARDX.DAT", "ARRL10.DAT"}) {
        const std::string bytes = test::readBytes(seed / name);
        ASSERT_FALSE(bytes.empty()) << name;
        EXPECT_EQ(bytes.substr(bytes.size() - 2), "\r\n") << name;
        std::size_t lf = 0, crlfs = 0;
        for (std::size_t i = 0; i < bytes.size(); ++i) {
            lf += bytes[i] == '\n';
            crlfs += bytes[i] == '\n' && i > 0 && bytes[i - 1] == '\r';
            EXPECT_NE(bytes[i], '\t') << name;
        }
        EXPECT_EQ(lf, crlfs) << name;
        EXPECT_EQ(text::encodeSjis(text::decodeSjis(bytes)), bytes) << name;
    }
    const auto ardxLines = test::readSjisLines(seed / "ARDX.DAT");
    const auto arrlLines = test::readSjisLines(seed / "ARRL10.DAT");
    EXPECT_EQ(ardxLines.back(), "end of file ardx.dat");
    EXPECT_EQ(arrlLines.back(), "end of file arrl10.dat");

    Folders f;
    std::filesystem::copy_file(seed / "ARDX.DAT", f.zlog / "ARDX.DAT");
    std::filesystem::copy_file(seed / "ARRL10.DAT", f.zlog / "ARRL10.DAT");
    const ArdxMaster m = f.build();
    const auto lines = checkMaster(f.zlog / "ardx_dat.mas", m);

    // Every group is a name line and one code line closed by ";", whose first code stands
    // behind the name; both files list the same places, so each code stands once.
    std::set<std::string> codes;
    for (std::size_t i = 1; i + 1 < ardxLines.size(); i += 2) {
        const std::string& nameLine = ardxLines[i];
        const std::string& codeLine = ardxLines[i + 1];
        ASSERT_GE(nameLine.size(), 31u) << nameLine;
        ASSERT_EQ(codeLine.substr(0, 2), "  ") << codeLine;
        ASSERT_EQ(codeLine.back(), ';') << codeLine;
        const std::string first = codeLine.substr(2, codeLine.find_first_of(",;") - 2);
        EXPECT_EQ(nameLine.substr(30), first);
        std::string list = codeLine.substr(2, codeLine.size() - 3);
        for (std::size_t p = 0; p != std::string::npos;) {
            const std::size_t c = list.find(',', p);
            const std::string code = list.substr(p, c == std::string::npos ? c : c - p);
            EXPECT_TRUE(codes.insert(code).second) << code;
            EXPECT_EQ(std::count(lines.begin(), lines.end(), rec(code, nameLine.substr(0, 30))), 1)
                << code;
            p = c == std::string::npos ? c : c + 1;
        }
    }
    EXPECT_EQ(lines.size(), codes.size());
    for (const char* code : {"AL", "AK", "DC", "HI", "WY", "AB", "NU", "PE", "QC", "YT"}) {
        EXPECT_EQ(codes.count(code), 1u) << code;
    }
    EXPECT_EQ(arrlLines.size(), ardxLines.size());
}
