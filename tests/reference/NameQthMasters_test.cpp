#include "failure/Failure.h"
#include "reference/NameQthMasters.h"
#include "support/TestSupport.h"
#include "text/SjisCodec.h"

#include <gtest/gtest.h>
#include <random>

using namespace vornhale;
using reference::CallMaster;

namespace {

struct RecordingObserver : base::RunObserver
{
    std::vector<std::string> statuses;
    void status(std::string_view text, base::Colour) override { statuses.emplace_back(text); }
};

std::string pad(std::string s, std::size_t bytes)
{
    // The test texts are ASCII or two-byte characters of three UTF-8 bytes.
    std::size_t width = 0;
    for (unsigned char c : s) {
        width += c < 0x80 ? 1 : ((c & 0xC0) == 0xC0 ? 2 : 0);
    }
    s.append(bytes > width ? bytes - width : 0, ' ');
    return s;
}

/// A master line: a blank, call (6), name (12), code (6), QTH (28), last column.
std::string row(const std::string& call, const std::string& name, const std::string& code,
                const std::string& qth, const std::string& last)
{
    return " " + pad(call, 6) + pad(name, 12) + pad(code, 6) + pad(qth, 28) + last;
}

CallMaster load(const test::TempDir& dir, CallMaster::Kind kind, std::vector<std::string> rows)
{
    rows.insert(rows.begin(), {" heading one", " ｺｰﾙ   氏名"});
    test::writeSjisLines(dir / "m.txt", rows);
    CallMaster m(kind);
    m.load(dir / "m.txt");
    return m;
}

struct Hit
{
    std::string name, code, qth, last;
    int qth_hit = -1;
    bool operator==(const Hit&) const = default;
};

Hit qthOf(const CallMaster& m, std::string_view call)
{
    Hit h{"old", "old", "old", "old", -1};
    reference::get_qth_mas(m, call, h.name, h.code, h.qth, h.last, h.qth_hit);
    return h;
}

Hit nameOf(const CallMaster& m, std::string_view call)
{
    Hit h{"old", "old", "old", "old", -1};
    reference::get_name_mas(m, call, h.name, h.code, h.qth, h.last);
    return h;
}

} // namespace

TEST(NameQthMasters, SkipsTwoHeadingLinesAndReadsTrimmedByteColumns)
{
    test::TempDir dir;
    const CallMaster m =
        load(dir, CallMaster::Kind::Name,
             {row("JX1AAA", "山田 太郎", "100101", "東京都千代田区", "QSL via bureau  ")});
    ASSERT_EQ(m.kazu(), 1u);
    EXPECT_TRUE(m.loaded());
    EXPECT_EQ(m.calls()[0], "JX1AAA");
    EXPECT_EQ(m.names()[0], "山田 太郎");
    EXPECT_EQ(m.codes()[0], "100101");
    EXPECT_EQ(m.qths()[0], "東京都千代田区");
    EXPECT_EQ(m.lasts()[0], "QSL via bureau");
    EXPECT_EQ(nameOf(m, "JX1AAA"),
              (Hit{"山田 太郎", "100101", "東京都千代田区", "QSL via bureau", -1}));
}

TEST(NameQthMasters, QthMasterReadsSixBytesOfALongLastColumn)
{
    test::TempDir dir;
    const std::string last54 = "PM95VQ" + std::string(48, 'x');
    const CallMaster qth =
        load(dir, CallMaster::Kind::Qth, {row("JX1AAA", "Taro", "1001", "Tokyo", last54)});
    EXPECT_EQ(qth.lasts()[0], "PM95VQ");
    const CallMaster name =
        load(dir, CallMaster::Kind::Name, {row("JX1AAA", "Taro", "1001", "Tokyo", last54 + "yz")});
    EXPECT_EQ(name.lasts()[0], last54);
    const CallMaster six =
        load(dir, CallMaster::Kind::Name, {row("JX1AAA", "Taro", "1001", "Tokyo", "PM95VQ")});
    EXPECT_EQ(six.lasts()[0], "PM95VQ");
}

TEST(NameQthMasters, ColumnsAreBytesOfTheShiftJisText)
{
    test::TempDir dir;
    // A two-byte name of exactly 12 bytes leaves the code at byte 20.
    const CallMaster m = load(dir, CallMaster::Kind::Qth,
                              {row("JX5EEE", "高橋健太郎X", "4001", "福岡県", "PM53FO")});
    EXPECT_EQ(m.names()[0], "高橋健太郎X");
    EXPECT_EQ(m.codes()[0], "4001");
    EXPECT_EQ(m.qths()[0], "福岡県");
    EXPECT_EQ(m.lasts()[0], "PM53FO");
}

TEST(NameQthMasters, LookupComparesInUpperCaseAndTrimsTheCall)
{
    test::TempDir dir;
    const CallMaster m =
        load(dir, CallMaster::Kind::Qth, {row("jx4ddd", "Ken", "0101", "Sapporo", "QN03SB")});
    EXPECT_EQ(qthOf(m, "JX4DDD"), (Hit{"Ken", "0101", "Sapporo", "QN03SB", 1}));
    EXPECT_EQ(qthOf(m, "  Jx4dDd "), (Hit{"Ken", "0101", "Sapporo", "QN03SB", 1}));
}

TEST(NameQthMasters, NotFoundGivesFourEmptyTextsAndNoHit)
{
    test::TempDir dir;
    const CallMaster m =
        load(dir, CallMaster::Kind::Qth, {row("JX1AAA", "Taro", "1001", "Tokyo", "PM95VQ")});
    EXPECT_EQ(qthOf(m, "JX9ZZZ"), (Hit{"", "", "", "", 0}));
    EXPECT_EQ(nameOf(m, "JX9ZZZ"), (Hit{"", "", "", "", -1}));
    EXPECT_EQ(qthOf(CallMaster(CallMaster::Kind::Qth), "JX1AAA"), (Hit{"", "", "", "", 0}));
}

TEST(NameQthMasters, TwoLinesForOneCallTheUpperWins)
{
    test::TempDir dir;
    const CallMaster m =
        load(dir, CallMaster::Kind::Name,
             {row("JX2BBB", "Upper", "1", "A", ""), row("jx2bbb", "Lower", "2", "B", ""),
              row("JX2BBB", "Third", "3", "C", "")});
    EXPECT_EQ(nameOf(m, "JX2BBB").name, "Upper");
}

TEST(NameQthMasters, ALongerCallMatchesOnlyWhatTheSixByteColumnHolds)
{
    test::TempDir dir;
    const CallMaster m =
        load(dir, CallMaster::Kind::Qth, {row("XX9TST", "Six", "", "", ""), " XX9TSTLonger   Cut"});
    EXPECT_EQ(m.calls()[1], "XX9TST");
    EXPECT_EQ(qthOf(m, "XX9TSTL").qth_hit, 0);
    EXPECT_EQ(qthOf(m, "XX9TST").name, "Six");
}

TEST(NameQthMasters, ShortLinesAndAFileWithoutRecords)
{
    test::TempDir dir;
    const CallMaster m = load(dir, CallMaster::Kind::Qth, {"", " JX1AB"});
    ASSERT_EQ(m.kazu(), 2u);
    EXPECT_EQ(qthOf(m, "JX1AB"), (Hit{"", "", "", "", 1}));
    // The empty line is a record with an empty call.
    EXPECT_EQ(qthOf(m, "").qth_hit, 1);

    test::writeSjisLines(dir / "one.txt", {" only a heading"});
    CallMaster empty(CallMaster::Kind::Name);
    empty.load(dir / "one.txt");
    EXPECT_TRUE(empty.loaded());
    EXPECT_EQ(empty.kazu(), 0u);
}

TEST(NameQthMasters, MissingFileFailsAndLeavesTheMasterUnloaded)
{
    test::TempDir dir;
    CallMaster m(CallMaster::Kind::Name);
    RecordingObserver observer;
    try {
        reference::read_name_mas_txt(m, dir / "name_mas.txt", observer);
        FAIL() << "no failure";
    } catch (const failure::Failure& e) {
        EXPECT_EQ(e.number(), failure::FileNotFound);
    }
    EXPECT_FALSE(m.loaded());
}

TEST(NameQthMasters, LoadersShowTheirStatusAndClearIt)
{
    test::TempDir dir;
    test::writeSjisLines(dir / "f.txt", {"h1", "h2", row("JX1AAA", "Taro", "", "", "")});
    CallMaster name(CallMaster::Kind::Name), qth(CallMaster::Kind::Qth);
    RecordingObserver observer;
    reference::read_name_mas_txt(name, dir / "f.txt", observer);
    reference::read_qth_mas_txt(qth, dir / "f.txt", observer);
    EXPECT_EQ(observer.statuses, (std::vector<std::string>{"　name_mas.txt を読込中 ．．．", "",
                                                           "　qth_mas.txt を読込中 ．．．", ""}));
    EXPECT_EQ(name.kazu(), 1u);
    EXPECT_EQ(qth.kazu(), 1u);
}

TEST(NameQthMasters, APortableCallIsPassedOverButQrpIsNotPortable)
{
    EXPECT_FALSE(reference::portableForQth("XX9TST/QRP"));
    EXPECT_FALSE(reference::portableForQth("XX9TST/QRPP"));
    EXPECT_FALSE(reference::portableForQth("xx9tst/qrp"));
    EXPECT_FALSE(reference::portableForQth("XX9TST"));
    EXPECT_TRUE(reference::portableForQth("XX9TST/1"));
    EXPECT_TRUE(reference::portableForQth("AB/XX9TST"));
    EXPECT_TRUE(reference::portableForQth("XX9TST/1/QRP"));
    // The text "/QRP" goes wherever it stands, so this one is taken as not portable too.
    EXPECT_FALSE(reference::portableForQth("XX9TST/QRPX"));
}

TEST(NameQthMasters, FolderValueSwitchesAMasterOff)
{
    EXPECT_FALSE(reference::masterFolderOn("使用しない"));
    EXPECT_TRUE(reference::masterFolderOn("/home/op/"));
    EXPECT_TRUE(reference::masterFolderOn(""));
}

TEST(NameQthMasters, CountShowsTheLineCountLessTwo)
{
    test::TempDir dir;
    // Two headings and three records, the last line ended: the counter reads 6 line places.
    test::writeBytes(dir / "name_mas.txt", "h1\r\nh2\r\na\r\nb\r\nc\r\n");
    RecordingObserver observer;
    EXPECT_EQ(reference::cmdCount_Click(dir / "name_mas.txt", observer), "4　件");
    EXPECT_EQ(observer.statuses,
              (std::vector<std::string>{"name_mas．txt の件数をカウント中 !!", "4　件"}));
    test::writeBytes(dir / "name_mas.txt", "h1\r\nh2\r\na\r\nb\r\nc");
    EXPECT_EQ(reference::cmdCount_Click(dir / "name_mas.txt", observer), "3　件");
}

TEST(NameQthMasters, BundledSamples)
{
    const auto seed = test::sourceDir() / "data" / "seed";
    CallMaster name(CallMaster::Kind::Name), qth(CallMaster::Kind::Qth);
    name.load(seed / "name_mas.txt");
    qth.load(seed / "qth_mas.txt");
    ASSERT_GT(name.kazu(), 0u);
    ASSERT_GT(qth.kazu(), 0u);
    // Every sample record is found by its own call in upper case, and a call written in
    // lower case in the file is found as well.
    bool lowerSeen = false;
    for (std::size_t i = 0; i < qth.kazu(); ++i) {
        std::string upper = qth.calls()[i];
        for (char& c : upper) {
            lowerSeen = lowerSeen || (c >= 'a' && c <= 'z');
            c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
        }
        const Hit h = qthOf(qth, upper);
        EXPECT_EQ(h.qth_hit, 1) << upper;
        EXPECT_EQ(h.name, qth.names()[i]);
        EXPECT_EQ(h.last.size(), 6u) << upper;
        EXPECT_FALSE(nameOf(name, upper).name.empty()) << upper;
    }
    EXPECT_TRUE(lowerSeen);
}

TEST(NameQthMasters, IndexedLookupOfA100000LineMasterAnswersAsTheWalkFromTheTop)
{
    test::TempDir dir;
    std::mt19937 rng(20240);
    std::uniform_int_distribution<int> digit(0, 9), letter(0, 5), lower(0, 3);
    auto randomCall = [&] {
        std::string c = "JX";
        c += static_cast<char>('0' + digit(rng));
        for (int i = 0; i < 3; ++i) {
            c += static_cast<char>((lower(rng) == 0 ? 'a' : 'A') + letter(rng));
        }
        return c;
    };
    std::vector<std::string> rows;
    for (int i = 0; i < 100000; ++i) {
        const std::string n = std::to_string(i);
        rows.push_back(row(randomCall(), "N" + n, n.substr(0, 6), "Q" + n, "GL" + n.substr(0, 4)));
    }
    const CallMaster m = load(dir, CallMaster::Kind::Qth, rows);
    ASSERT_EQ(m.kazu(), 100000u);

    auto up = [](std::string s) {
        for (char& c : s) {
            c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
        }
        return s;
    };
    std::vector<std::string> upCalls;
    for (const auto& c : m.calls()) {
        upCalls.push_back(up(c));
    }
    auto walk = [&](const std::string& call) -> Hit {
        std::string key = call;
        key.erase(0, key.find_first_not_of(' '));
        key.erase(key.find_last_not_of(' ') + 1);
        key = up(key);
        for (std::size_t i = 0; i < m.kazu(); ++i) {
            if (upCalls[i] == key) {
                return Hit{m.names()[i], m.codes()[i], m.qths()[i], m.lasts()[i], 1};
            }
        }
        return Hit{"", "", "", "", 0};
    };
    int hits = 0;
    for (int q = 0; q < 300; ++q) {
        const std::string call = (q % 3 == 0 ? " " : "") + randomCall();
        const Hit expected = walk(call);
        hits += expected.qth_hit;
        EXPECT_EQ(qthOf(m, call), expected) << call;
    }
    EXPECT_GT(hits, 50);
}
