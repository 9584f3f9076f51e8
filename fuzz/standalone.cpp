/**
 * Runs a fuzz target over files without libFuzzer: each seed as it is, cut at some places, and with some of its bytes
 * replaced. The same ones every time.
 */
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr std::size_t cuts = 24;
constexpr int replacements = 48;

/** What is in each run lies in a block of its own size, so that the sanitizer sees a read behind its end. */
void run(const Bytes &bytes)
{
    const Bytes exact(bytes.begin(), bytes.end());
    LLVMFuzzerTestOneInput(exact.data(), exact.size());
}

void runVariants(const Bytes &seed)
{
    run(seed);
    for (std::size_t cut = 0; cut < cuts; ++cut)
        run({seed.begin(), seed.begin() + static_cast<std::ptrdiff_t>(seed.size() * cut / cuts)});
    std::minstd_rand random(1);
    for (int i = 0; i < replacements && !seed.empty(); ++i) {
        Bytes changed = seed;
        changed[random() % changed.size()] = static_cast<std::uint8_t>(random() >> 8);
        run(changed);
    }
}

} // namespace

int main(int argc, char *argv[])
{
    int seeds = 0;
    for (int argument = 1; argument < argc; ++argument) {
        std::vector<std::filesystem::path> files{argv[argument]};
        if (std::filesystem::is_directory(files.front()))
            files.assign(std::filesystem::directory_iterator(files.front()), {});
        for (const auto &path : files) {
            std::ifstream file(path, std::ios::binary);
            if (!file) {
                std::fprintf(stderr, "no file %s\n", path.string().c_str());
                return 1;
            }
            std::printf("%s\n", path.filename().string().c_str());
            std::fflush(stdout); // the last name before a crash is the seed that made it
            runVariants({std::istreambuf_iterator<char>(file), {}});
            ++seeds;
        }
    }
    std::printf("%d seeds\n", seeds);
    return seeds > 0 ? 0 : 1;
}
