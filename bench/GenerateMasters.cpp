// Writes the operator's masters at benchmark size into a program folder: name_mas.txt and
// qth_mas.txt with one row per call of a real call list (repeated with suffixes up to N
// rows), and a province master of N codes. Deterministic.

#include "CallList.h"

#include <fstream>
#include <iostream>
#include <string>
#include <vector>

namespace {

std::string field(std::string value, std::size_t width)
{
    value.resize(width, ' ');
    return value;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc < 4) {
        std::cerr << "usage: GenerateMasters N PROGRAM_FOLDER MASTER.SCP\n";
        return 2;
    }
    const long count = std::stol(argv[1]);
    const std::string folder = argv[2];
    const std::vector<std::string> calls = vornhale::bench::readCalls(argv[3], 6);
    if (calls.empty()) {
        std::cerr << "no calls in " << argv[3] << "\n";
        return 1;
    }
    std::ofstream names(folder + "/name_mas.txt", std::ios::binary);
    std::ofstream qths(folder + "/qth_mas.txt", std::ios::binary);
    std::ofstream prov(folder + "/bench_prov.mas", std::ios::binary);
    names << " name_mas.txt  benchmark\r\n call  name        code  QTH                         "
             "remark\r\n";
    qths
        << " qth_mas.txt  benchmark\r\n call  name        code  QTH                         GL\r\n";
    prov << "; benchmark province master\r\n";
    for (long i = 0; i < count; ++i) {
        // Later rounds repeat the calls: the first row of a call must win, as in the walk.
        const std::string& call = calls[static_cast<std::size_t>(i) % calls.size()];
        const std::string row = " " + field(call, 6) + field("OP" + std::to_string(i), 12) +
                                field(std::to_string(100000 + i % 900000), 6) +
                                field("QTH " + std::to_string(i), 28);
        names << row << "remark " << i << "\r\n";
        qths << row << "PM95" << static_cast<char>('A' + i % 26)
             << static_cast<char>('A' + i / 26 % 26) << "\r\n";
        prov << i << ",Province " << i << "\r\n";
    }
    return 0;
}
