// Without libFuzzer, a fuzz target becomes a replay program: every file named on the command
// line, or found in a folder named there, goes once through the target's entry point. The
// test suite runs each target over its seeds and the inputs of past findings this way, so a
// fixed finding stays fixed in the normal and the sanitizer builds.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

int main(int argc, char** argv)
{
    namespace fs = std::filesystem;
    std::vector<fs::path> inputs;
    for (int i = 1; i < argc; ++i) {
        const fs::path named = argv[i];
        if (fs::is_directory(named)) {
            for (const auto& entry : fs::recursive_directory_iterator(named)) {
                if (entry.is_regular_file()) {
                    inputs.push_back(entry.path());
                }
            }
        } else if (fs::is_regular_file(named)) {
            inputs.push_back(named);
        } else {
            std::fprintf(stderr, "no such input: %s\n", argv[i]);
            return 2;
        }
    }
    std::sort(inputs.begin(), inputs.end());
    for (const fs::path& input : inputs) {
        std::ifstream in(input, std::ios::binary);
        const std::string bytes((std::istreambuf_iterator<char>(in)),
                                std::istreambuf_iterator<char>());
        std::printf("%s\n", input.string().c_str());
        std::fflush(stdout);
        LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
    }
    std::printf("%zu inputs replayed\n", inputs.size());
    return inputs.empty() ? 1 : 0;
}
