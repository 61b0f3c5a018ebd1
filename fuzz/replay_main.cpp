// fuzz_replay TARGET FOLDER: passes the target's seeds and each file of FOLDER, its corpus, to the target once. What
// fails ends the program as a crash would, behind the name of the input.

#include "seeds.h"

#include <algorithm>
#include <cstdint>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>

// The targets are all called LLVMFuzzerTestOneInput in their files; the build renames them and lists them here.
#define TARGET(name) extern "C" int fuzz_##name(const std::uint8_t* data, std::size_t size);
VELMORA_FUZZ_TARGETS
#undef TARGET

namespace
{

using velmora::fuzz::Seed;
using Function = int (*)(const std::uint8_t* data, std::size_t size);

Function targetNamed(std::string_view name)
{
#define TARGET(own)                                                                                                    \
    if (name == #own)                                                                                                  \
        return fuzz_##own;
    VELMORA_FUZZ_TARGETS
#undef TARGET
    return nullptr;
}

std::vector<Seed> corpusIn(const std::filesystem::path& folder)
{
    std::vector<Seed> corpus;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        std::ifstream file(entry.path(), std::ios::binary);
        const std::string content{std::istreambuf_iterator<char>(file), {}};
        if (!file)
            throw std::runtime_error("cannot read " + entry.path().string());
        corpus.push_back({entry.path().filename().string(), {content.begin(), content.end()}});
    }
    std::sort(corpus.begin(), corpus.end(), [](const Seed& a, const Seed& b) { return a.name < b.name; });
    return corpus;
}

void replay(Function target, const char* kind, const std::vector<Seed>& inputs)
{
    if (inputs.empty())
        throw std::runtime_error(std::string("there is no ") + kind);
    for (const Seed& input : inputs) {
        std::cout << kind << " " << input.name << std::endl;
        target(input.bytes.data(), input.bytes.size());
    }
}

} // namespace

int main(int argc, char** argv)
{
    try {
        const Function target = argc == 3 ? targetNamed(argv[1]) : nullptr;
        if (!target)
            throw std::runtime_error("usage: fuzz_replay TARGET FOLDER");
        replay(target, "seed", velmora::fuzz::seedsOf(argv[1]));
        replay(target, "corpus", corpusIn(argv[2]));
        return 0;
    } catch (const std::exception& error) {
        std::cerr << "fuzz_replay: " << error.what() << "\n";
        return 1;
    }
}
