// Runs a fuzzer without libFuzzer on each file of the folders and on some thousand mutations, the same ones in every
// run. Usage: fuzz_... FOLDER...
#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

#include "tests/fuzz/byte_source.h"

namespace {

void Run(const std::string& input) {
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(input.data()), input.size());
}

std::string Mutated(std::string input, const std::vector<std::string>& others, std::mt19937& random) {
    const auto below = [&](std::size_t end) { return std::uniform_int_distribution<std::size_t>(0, end - 1)(random); };
    for (auto change = below(4) + 1; change != 0; --change) {
        const auto at = below(input.size() + 1);
        switch (below(5)) {
        case 0: // another byte
            if (at < input.size()) {
                input[at] = static_cast<char>(below(256));
            }
            break;
        case 1: // one byte more
            input.insert(at, 1, static_cast<char>(below(256)));
            break;
        case 2: // a part less
            input.erase(at, below(8));
            break;
        case 3: { // a part twice
            const auto part = input.substr(at, below(16) + 1);
            input.insert(below(input.size() + 1), part);
            break;
        }
        default: { // a part of another input
            const auto& other = others[below(others.size())];
            const auto from = below(other.size() + 1);
            input.insert(at, other.substr(from, below(32)));
            break;
        }
        }
    }
    return input;
}

} // namespace

int main(int argc, char** argv) {
    std::vector<std::string> paths;
    for (int i = 1; i < argc; ++i) {
        for (const auto& entry : std::filesystem::directory_iterator(argv[i])) {
            paths.push_back(entry.path().string());
        }
    }
    if (paths.empty()) {
        std::fputs("usage: fuzz_... FOLDER...     folders with inputs\n", stderr);
        return 2;
    }
    std::sort(paths.begin(), paths.end()); // the mutations depend on the order
    std::vector<std::string> inputs;
    for (const auto& path : paths) {
        std::ifstream file(path, std::ios::binary);
        inputs.emplace_back(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
        Run(inputs.back());
    }
    constexpr int kMutations = 20000;
    std::mt19937 random(1);
    for (int i = 0; i < kMutations; ++i) {
        const auto& input = inputs[std::uniform_int_distribution<std::size_t>(0, inputs.size() - 1)(random)];
        Run(Mutated(input, inputs, random));
    }
    // Not to standard output: a fuzzer may have closed it.
    std::fprintf(stderr, "%zu inputs and %d mutations\n", inputs.size(), kMutations);
    return 0;
}
