// Runs a fuzz target over files and the files of folders, where libFuzzer isn't at hand.

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

namespace {

int inputs = 0;

void runFile(const std::filesystem::path &path)
{
    std::ifstream file(path, std::ios::binary);
    const std::vector<char> bytes((std::istreambuf_iterator<char>(file)), {});
    // An input of its own size on the heap lets the address sanitizer see a read beyond it.
    const std::vector<std::uint8_t> input(bytes.begin(), bytes.end());
    LLVMFuzzerTestOneInput(input.data(), input.size());
    ++inputs;
}

} // namespace

int main(int argc, char **argv)
{
    for (int i = 1; i < argc; ++i) {
        if (!std::filesystem::is_directory(argv[i])) {
            runFile(argv[i]);
            continue;
        }
        for (const auto &entry : std::filesystem::recursive_directory_iterator(argv[i])) {
            if (entry.is_regular_file())
                runFile(entry.path());
        }
    }
    std::printf("%d inputs\n", inputs);
    return inputs > 0 ? 0 : 1; // a corpus without a file tests nothing
}
