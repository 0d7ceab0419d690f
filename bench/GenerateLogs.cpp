// Writes a log of N contacts in any of the binary and text forms the program reads, for the
// benchmarks: zLog .TXT, .ZLO and .ZLOX, RTCL text logs before and from version 3.00, RTCL
// binary logs of versions 4.00 and 4.30, and CTESTWIN .lg8. The contacts are drawn as in the
// other generators: calls from a real call list (MASTER.SCP), a pool of about a third of the
// log so that stations are worked again, portable calls, every HF band and 50/144 MHz, CW,
// phone and RTTY, serial exchanges, operators and frequency memos. The records are built with
// the layout builders of the reader tests and written one at a time, so a log of a million
// contacts needs no more memory than a short one. Deterministic for a given seed.

#include "CallList.h"
#include "readers/Lg8Writer.h"
#include "readers/RtclWriter.h"
#include "readers/ZloWriter.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iostream>
#include <random>
#include <string>
#include <vector>

namespace {

using vornhale::test::Lg8QsoSpec;
using vornhale::test::RtclBinarySpec;
using vornhale::test::RtclBinaryWriter;
using vornhale::test::RtclNewSpec;
using vornhale::test::RtclOldSpec;
using vornhale::test::ZloQsoSpec;
using vornhale::test::ZloWriter;

// Places `value` at byte column `col` (from 1) of `line`, widening it with blanks.
void put(std::string& line, std::size_t col, const std::string& value)
{
    if (line.size() < col - 1 + value.size()) {
        line.resize(col - 1 + value.size(), ' ');
    }
    line.replace(col - 1, value.size(), value);
}

std::string rightAligned(const std::string& s, std::size_t width)
{
    return s.size() < width ? std::string(width - s.size(), ' ') + s : s;
}

std::string twoDigits(long v)
{
    char b[24];
    std::snprintf(b, sizeof b, "%02ld", v);
    return b;
}

struct Band
{
    const char* mhz;  // the band as zLog names it
    const char* khz;  // a frequency in the band
    std::uint8_t zlo; // zLog's band code
    const char* rtcl; // the band as RTCL names it
    std::uint8_t lg8; // CTESTWIN's band code
};

const Band kBands[] = {{"1.9", "1910", 0, "1.9", 0}, {"3.5", "3525", 1, "3.5", 1},
                       {"7", "7025", 2, "7", 2},     {"14", "14025", 4, "14", 4},
                       {"21", "21025", 6, "21", 6},  {"28", "28025", 8, "28", 8},
                       {"50", "50100", 9, "50", 9},  {"144", "144100", 10, "144", 10}};

struct Mode
{
    const char* zlog;  // the mode as zLog's texts write it
    std::uint8_t code; // zLog's and CTESTWIN's mode code
    const char* rtcl;
    bool phone;
};

const Mode kModes[] = {{"CW", 0, "CW", false},
                       {"SSB", 1, "SSB", true},
                       {"FM", 2, "FM", true},
                       {"RTY", 4, "RTTY", false}};

const char* const kOps[] = {"JA1ZZZ", "JH1ZZZ", "JR1ZZZ"};

// One drawn contact, whatever the form it is written in.
struct Contact
{
    std::string call;
    const Band* band;
    const Mode* mode;
    long minutes; // since 2026/11/22 00:00, the contest's start
    long serial;
    long rcvd;
    std::string op; // empty or an operator
    bool freqMemo;  // the memo carries the frequency
};

class Contacts
{
public:
    Contacts(long count, const std::vector<std::string>& calls, unsigned seed) : m_rng(seed)
    {
        m_poolSize = std::max<std::size_t>(1, static_cast<std::size_t>(count / 3));
        for (std::size_t i = 0; i < m_poolSize; ++i) {
            std::string call = calls[m_rng() % calls.size()];
            switch (m_rng() % 40) {
            case 0:
                call = "KH6/" + call;
                break;
            case 1:
                call += "/P";
                break;
            case 2:
                call += "/1";
                break;
            default:
                break;
            }
            m_pool.push_back(call.substr(0, 12));
        }
    }

    Contact next()
    {
        Contact c;
        const std::size_t idx = m_skew(m_rng) < 30
                                    ? m_rng() % std::max<std::size_t>(1, m_poolSize / 20)
                                    : m_rng() % m_poolSize;
        c.call = m_pool[idx];
        c.band = &kBands[m_rng() % std::size(kBands)];
        c.mode = &kModes[m_rng() % std::size(kModes)];
        m_minutes += m_rng() % 2;
        c.minutes = m_minutes % (7 * 1440);
        c.serial = 1 + m_serial++ % 9999;
        c.rcvd = 1 + m_rng() % 40;
        c.op = m_rng() % 2 == 0 ? kOps[m_rng() % std::size(kOps)] : "";
        c.freqMemo = m_rng() % 3 == 0;
        return c;
    }

private:
    std::mt19937 m_rng;
    std::uniform_int_distribution<int> m_skew{0, 99};
    std::size_t m_poolSize = 1;
    std::vector<std::string> m_pool;
    long m_minutes = 0;
    long m_serial = 0;
};

long day(const Contact& c)
{
    return 22 + c.minutes / 1440;
}
long hour(const Contact& c)
{
    return (c.minutes / 60) % 24;
}
long minute(const Contact& c)
{
    return c.minutes % 60;
}

// Days since 1899-12-30 of the contact's time: 2026/11/22 is day 46348.
double oleDate(const Contact& c)
{
    return 46348.0 + static_cast<double>(c.minutes) / 1440.0;
}

std::string rst(const Contact& c)
{
    return c.mode->phone ? "59" : "599";
}

std::string zlogMemo(const Contact& c)
{
    std::string memo;
    if (!c.op.empty()) {
        memo += "%%" + c.op + "%% ";
    }
    if (c.freqMemo) {
        memo += std::string("(") + c.band->khz + ")";
    }
    return memo;
}

ZloQsoSpec zloQso(const Contact& c)
{
    ZloQsoSpec q;
    q.when = oleDate(c);
    q.call = c.call;
    q.sent = std::to_string(c.serial);
    q.rcvd = std::to_string(c.rcvd);
    q.rstSent = q.rstRcvd = c.mode->phone ? 59 : 599;
    q.mode = c.mode->code;
    q.band = c.band->zlo;
    q.op = c.op;
    q.memo = c.freqMemo ? std::string("(") + c.band->khz + ")" : "";
    return q;
}

// A .ZLOX record: the .ZLO record widened to 384 bytes with the frequency in kHz.
std::string zloxRecord(const std::string& zloRecord, const Contact& c)
{
    std::string r = zloRecord + std::string(128, '\0');
    const std::string freq = std::string(c.band->khz) + ".0";
    r[256] = static_cast<char>(freq.size());
    r.replace(257, freq.size(), freq);
    return r;
}

std::string txtLine(const Contact& c)
{
    std::string line;
    put(line, 1, rightAligned("11", 3));
    put(line, 5, rightAligned(std::to_string(day(c)), 3));
    put(line, 9, twoDigits(hour(c)) + twoDigits(minute(c)));
    put(line, 14, c.call);
    put(line, 25, rst(c) + std::to_string(c.serial));
    put(line, 38, rst(c) + std::to_string(c.rcvd));
    put(line, 58, rightAligned(c.band->mhz, 4));
    put(line, 65, c.mode->zlog);
    put(line, 70, "1");
    const std::string memo = zlogMemo(c);
    if (!memo.empty()) {
        put(line, 74, memo);
    }
    return line;
}

std::string serial3(long v)
{
    char b[24];
    std::snprintf(b, sizeof b, "%03ld", v % 1000);
    return b;
}

std::string rtclOldLine(const Contact& c)
{
    RtclOldSpec s;
    s.date = "2026-11-" + twoDigits(day(c));
    s.time = twoDigits(hour(c)) + ":" + twoDigits(minute(c));
    s.call = c.call;
    s.sent = rst(c) + "-" + serial3(c.serial);
    s.rcvd = rst(c) + "-" + serial3(c.rcvd);
    s.band = c.band->rtcl;
    s.note = c.freqMemo ? std::string("[FRQ ") + c.band->khz + "]" : "";
    return s.line();
}

std::string rtclNewLine(const Contact& c)
{
    RtclNewSpec s;
    s.when = "2026-11-" + twoDigits(day(c)) + " " + twoDigits(hour(c)) + ":" + twoDigits(minute(c));
    s.call = c.call;
    s.sent = rst(c) + "-" + serial3(c.serial);
    s.rcvd = rst(c) + "-" + serial3(c.rcvd);
    s.band = c.band->rtcl;
    s.mode = c.mode->rtcl;
    const std::string khz = c.band->khz;
    s.freq = khz.size() < 5 ? "0" + khz : khz;
    return s.line();
}

std::string rtclBinaryRecord(const Contact& c, long n, bool v430)
{
    RtclBinarySpec s;
    char number[24];
    std::snprintf(number, sizeof number, "%05ld", n % 100000);
    s.number = number;
    s.band = c.band->rtcl;
    s.mode = c.mode->rtcl;
    s.when = oleDate(c);
    s.call = c.call;
    s.sentRst = s.rcvdRst = rst(c);
    s.sent1 = serial3(c.serial);
    s.rcvd1 = serial3(c.rcvd);
    s.op = c.op;
    return RtclBinaryWriter(v430).record(s).bytes();
}

Lg8QsoSpec lg8Qso(const Contact& c)
{
    Lg8QsoSpec q;
    q.call = c.call;
    q.sent = rst(c) + "100110";
    q.rcvd = rst(c) + std::to_string(c.rcvd);
    q.mode = c.mode->code;
    q.band = c.band->lg8;
    // 2026-11-22 00:00 UTC is 1795305600 seconds since 1970.
    q.utcSeconds = 1795305600 + static_cast<std::int64_t>(c.minutes) * 60;
    q.op = c.op;
    return q;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc < 5) {
        std::cerr << "usage: GenerateLogs FORM COUNT OUT MASTER.SCP [SEED]\n"
                     "FORM: txt zlo zlox log_old log_new log_v4 log_v430 lg8\n";
        return 2;
    }
    const std::string form = argv[1];
    const long count = std::stol(argv[2]);
    const std::string outPath = argv[3];
    const std::vector<std::string> calls = vornhale::bench::readCalls(argv[4], 9);
    if (calls.empty()) {
        std::cerr << "no calls in " << argv[4] << "\n";
        return 1;
    }
    Contacts contacts(count, calls,
                      argc > 5 ? static_cast<unsigned>(std::stoul(argv[5])) : 20261123u);
    std::ofstream out(outPath, std::ios::binary);

    if (form == "txt") {
        out << "mon day time  callsign      sent         rcvd      multi   MHz mode pts memo\r\n";
        for (long i = 0; i < count; ++i) {
            out << txtLine(contacts.next()) << "\r\n";
        }
    } else if (form == "zlo" || form == "zlox") {
        std::string header = ZloWriter().header("ALL JA1 CONTEST").bytes();
        if (form == "zlox") {
            header += std::string(128, '\0');
            std::memcpy(header.data(), "ZLOX", 4);
            const auto n = static_cast<std::uint32_t>(count);
            std::memcpy(header.data() + 4, &n, 4);
        }
        out << header;
        for (long i = 0; i < count; ++i) {
            const Contact c = contacts.next();
            const std::string r = ZloWriter().qso(zloQso(c)).bytes();
            out << (form == "zlox" ? zloxRecord(r, c) : r);
        }
    } else if (form == "log_old" || form == "log_new") {
        for (long i = 0; i < count; ++i) {
            const Contact c = contacts.next();
            out << (form == "log_old" ? rtclOldLine(c) : rtclNewLine(c)) << "\r\n";
        }
    } else if (form == "log_v4" || form == "log_v430") {
        for (long i = 0; i < count; ++i) {
            out << rtclBinaryRecord(contacts.next(), i + 1, form == "log_v430");
        }
    } else if (form == "lg8") {
        // The builder writes the list head, the records and the settings trailer; the head
        // comes from a log of one contact, each further record is its fixed-size block after
        // the two-byte separator. The list count is 16 bits; the reader reads every record.
        const std::string trailer("\x17\x00\x01\x00", 4);
        const std::size_t head = 2 + 6 + 8;
        for (long i = 0; i < count; ++i) {
            const std::string one = vornhale::test::lg8Bytes({lg8Qso(contacts.next())},
                                                             static_cast<std::uint16_t>(count));
            const std::string record = one.substr(head, one.size() - head - trailer.size());
            if (i == 0) {
                out << one.substr(0, head);
            } else {
                out << std::string("\x01\x80", 2);
            }
            out << record;
        }
        out << trailer;
    } else {
        std::cerr << "unknown form " << form << "\n";
        return 2;
    }
    return 0;
}
