// Runs a fuzz entry without libFuzzer: each file of the corpus folder as it is, then a fixed number
// of mutations of each, from a fixed seed, so that a failure repeats.

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

using Bytes = std::vector<std::uint8_t>;

std::vector<Bytes> readCorpus(const char* folder)
{
    std::vector<std::filesystem::path> paths;
    for (const auto& entry : std::filesystem::directory_iterator(folder))
        paths.push_back(entry.path());
    std::sort(paths.begin(), paths.end());
    std::vector<Bytes> corpus{Bytes{}};
    for (const auto& path : paths) {
        std::ifstream in(path, std::ios::binary);
        corpus.emplace_back(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
    }
    return corpus;
}

void mutate(Bytes& bytes, std::mt19937& random)
{
    const auto pick = [&](std::size_t bound) { return bound == 0 ? 0 : random() % bound; };
    for (std::size_t edits = 1 + pick(4); edits > 0; --edits) {
        const std::size_t at = pick(bytes.size() + 1);
        switch (pick(5)) {
        case 0:
            bytes.insert(bytes.begin() + static_cast<std::ptrdiff_t>(at),
                         static_cast<std::uint8_t>(random()));
            break;
        case 1:
            if (at < bytes.size())
                bytes.erase(bytes.begin() + static_cast<std::ptrdiff_t>(at));
            break;
        case 2: bytes.resize(at); break;
        default:
            if (at < bytes.size())
                bytes[at] = static_cast<std::uint8_t>(random());
            break;
        }
    }
}

} // namespace

int main(int argc, char** argv)
{
    if (argc < 2) {
        std::fprintf(stderr, "usage: %s CORPUS-FOLDER [MUTATIONS]\n", argv[0]);
        return 2;
    }
    const int mutations = argc > 2 ? std::atoi(argv[2]) : 200;
    std::mt19937 random(430);
    for (const Bytes& seed : readCorpus(argv[1])) {
        LLVMFuzzerTestOneInput(seed.data(), seed.size());
        for (int i = 0; i < mutations; ++i) {
            Bytes changed = seed;
            mutate(changed, random);
            LLVMFuzzerTestOneInput(changed.data(), changed.size());
        }
    }
    return 0;
}
