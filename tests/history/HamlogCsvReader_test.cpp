#include "history/HamlogCsvReader.h"

#include "failure/Failure.h"
#include "history/HamlogHdbReader.h"
#include "support/TestSupport.h"
#include "text/LineFile.h"

#include <gtest/gtest.h>

namespace vornhale::history {
namespace {

TEST(HamlogCsvReader, ReadsTheLinesOfTheHamlogCsvSample)
{
    const auto sample = test::realData("hamlog/JI1FLB_hamlog_csv_format_sample.txt");
    if (!sample) {
        GTEST_SKIP() << "realdata not present";
    }
    // The sample's first line describes the columns; the export itself has none.
    const std::vector<std::string> lines = text::readRawLines(*sample);
    test::TempDir dir;
    std::string body;
    for (std::size_t i = 1; i < lines.size(); ++i) {
        body += lines[i] + "\r\n";
    }
    test::writeBytes(dir / "export.csv", body);
    HamlogCsvReader reader;
    ASSERT_EQ(reader.open(dir / "export.csv"), 3);
    const HamlogFields& f = reader.read(1);
    EXPECT_EQ(f[0], "JA6WFM/6");
    EXPECT_EQ(f[1], "18/08/04");
    EXPECT_EQ(f[2], "18:06J");
    EXPECT_EQ(f[3], "599");
    EXPECT_EQ(f[4], "599");
    EXPECT_EQ(f[5], "21.057");
    EXPECT_EQ(f[6], "CW");
    EXPECT_EQ(f[7], "   ");
    EXPECT_EQ(f[9], "J");
    EXPECT_EQ(f[12], "2018 FD Contest ");
    EXPECT_EQ(f[13], " 21.057MHz");
    EXPECT_EQ(reader.read(3)[0], "JR8LRQ/8");
}

TEST(HamlogCsvReader, TakesTheLastTwoDigitsOfAFourDigitYear)
{
    test::TempDir dir;
    test::writeSjisLines(dir / "e.csv", {"\"JA1ABC\",\"2050/01/01\",\"12:00J\"",
                                          "JA1ABC,1951/12/31,12:00J", "JA1ABC,51/12/31",
                                          "JA1ABC,20240101"});
    HamlogCsvReader reader;
    ASSERT_EQ(reader.open(dir / "e.csv"), 4);
    EXPECT_EQ(reader.read(1)[1], "50/01/01");
    EXPECT_EQ(reader.read(2)[1], "51/12/31");
    EXPECT_EQ(reader.read(3)[1], "51/12/31");
    EXPECT_EQ(reader.read(4)[1], "20240101");
}

TEST(HamlogCsvReader, ParsesQuotesBareFieldsAndMissingColumns)
{
    const HamlogFields f =
        HamlogCsvReader::parseLine("\"A\"\"B\",bare , \"x\"tail,\"c,d\",,\"\"");
    EXPECT_EQ(f[0], "A\"B");
    EXPECT_EQ(f[1], "bare ");
    EXPECT_EQ(f[2], " \"x\"tail");
    EXPECT_EQ(f[3], "c,d");
    EXPECT_EQ(f[4], "");
    EXPECT_EQ(f[5], "");
    EXPECT_EQ(f[13], "");
    const HamlogFields unclosed = HamlogCsvReader::parseLine("\"open");
    EXPECT_EQ(unclosed[0], "open");
}

TEST(HamlogCsvReader, DecodesShiftJisAndCutsAtNul)
{
    test::TempDir dir;
    test::writeBytes(dir / "e.csv", std::string("JA1ABC,24/01/01,,,,7,CW,,,J,\x91\xbe\x98\x59,") +
                                        std::string("Q\0TH\r\n", 6));
    HamlogCsvReader reader;
    ASSERT_EQ(reader.open(dir / "e.csv"), 1);
    EXPECT_EQ(reader.read(1)[10], "太郎");
    EXPECT_EQ(reader.read(1)[11], "Q");
}

TEST(HamlogCsvReader, SkipsEmptyLinesAndKnowsAllLineEnds)
{
    test::TempDir dir;
    test::writeBytes(dir / "e.csv", "A1A,24/01/01\r\n\r\nB1B,24/01/01\rC1C,24/01/01\n");
    HamlogCsvReader reader;
    ASSERT_EQ(reader.open(dir / "e.csv"), 3);
    EXPECT_EQ(reader.read(2)[0], "B1B");
    EXPECT_EQ(reader.read(3)[0], "C1C");
    EXPECT_THROW(reader.read(4), failure::Failure);
    EXPECT_THROW(reader.read(0), failure::Failure);
}

TEST(HamlogCsvReader, AMissingOrEmptyExport)
{
    test::TempDir dir;
    HamlogCsvReader reader;
    EXPECT_FALSE(reader.open(dir / "none.csv"));
    EXPECT_FALSE(reader.open(dir.path()));
    test::writeBytes(dir / "empty.csv", "");
    EXPECT_EQ(reader.open(dir / "empty.csv"), 0);
}

TEST(HamlogReader, ChoosesTheReaderByExtension)
{
    EXPECT_NE(dynamic_cast<HamlogCsvReader*>(makeHamlogReader("/x/export.csv").get()), nullptr);
    EXPECT_NE(dynamic_cast<HamlogCsvReader*>(makeHamlogReader("/x/EXPORT.CSV").get()), nullptr);
    EXPECT_NE(dynamic_cast<HamlogHdbReader*>(makeHamlogReader("/x/Hamlog.hdb").get()), nullptr);
    EXPECT_NE(dynamic_cast<HamlogHdbReader*>(makeHamlogReader("/x/Hamlog").get()), nullptr);
}

TEST(HamlogReader, TheMstSiblingIsNeededForADatabaseOnly)
{
    test::TempDir dir;
    test::writeBytes(dir / "Hamlog.hdb", "x");
    EXPECT_FALSE(hamlogFilesPresent((dir / "Hamlog.hdb").string()));
    test::writeBytes(dir / "Hamlog.mst", "x");
    EXPECT_TRUE(hamlogFilesPresent((dir / "Hamlog.hdb").string()));
    test::writeBytes(dir / "UPPER.HDB", "x");
    test::writeBytes(dir / "UPPER.MST", "x");
    EXPECT_TRUE(hamlogFilesPresent((dir / "UPPER.HDB").string()));
    EXPECT_FALSE(hamlogFilesPresent((dir / "none.hdb").string()));
    EXPECT_FALSE(hamlogFilesPresent(""));
    EXPECT_FALSE(hamlogFilesPresent((dir / "export.csv").string()));
    test::writeBytes(dir / "export.csv", "x");
    EXPECT_TRUE(hamlogFilesPresent((dir / "export.csv").string()));
}

} // namespace
} // namespace vornhale::history
