// Runs a fuzzing program without libFuzzer, among the ordinary tests: the inputs of its corpus, and each of
// them with changes that are the same on every run.
//
//     fuzz_<subject> FOLDER CHANGES      so many changes of each input
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <vector>

#include "Fuzz/Fuzz.h"

using Bytes = std::vector<uint8_t>;

int main(int argc, char** argv) {
    std::vector<Bytes> corpus;
    for (const auto& entry : std::filesystem::directory_iterator(argc == 3 ? argv[1] : "")) {
        std::ifstream file(entry.path(), std::ios::binary);
        corpus.emplace_back(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
    }
    // Not in the file system's order: the run is the same everywhere.
    std::ranges::sort(corpus);

    LLVMFuzzerInitialize(&argc, &argv);
    std::mt19937 random(20240817);
    const auto below = [&random](size_t limit) { return random() % std::max<size_t>(limit, 1); };
    int runs = 0;
    for (const Bytes& original : corpus) {
        for (int left = std::atoi(argv[2]); left >= 0; --left, ++runs) {
            Bytes bytes = original;
            for (int change = 0; left > 0 && !bytes.empty() && change < 3; ++change)
                bytes[below(bytes.size())] = static_cast<uint8_t>(random());
            if (left % 2 == 1)
                bytes.resize(below(bytes.size() * 2));
            // Memory of the very size lets the sanitizer see every read beyond the end.
            const Bytes copy(bytes);
            LLVMFuzzerTestOneInput(copy.data(), copy.size());
        }
    }
    RequireEnoughWasMet();
    std::printf("%d inputs\n", runs);
    Require(runs > 0);
}
