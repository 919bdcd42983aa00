// Runs a fuzz target over every file of the folders and files that it is given: the saved corpus as an ordinary test.

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <vector>

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv);
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace
{

// The input lies in a block of exactly its size, so that a sanitizer sees one byte too far.
void RunFile(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    const std::vector<char> bytes{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    const auto block = std::make_unique<std::uint8_t[]>(bytes.size());
    std::copy(bytes.begin(), bytes.end(), block.get());

    std::printf("%s\n", path.filename().string().c_str());
    std::fflush(stdout); // the name of an input that ends the program must not be lost
    LLVMFuzzerTestOneInput(block.get(), bytes.size());
}

int RunAll(const std::filesystem::path& path)
{
    if (!std::filesystem::is_directory(path))
        return RunFile(path), 1;

    int count = 0;
    for (const auto& entry : std::filesystem::directory_iterator(path))
        if (entry.is_regular_file())
            RunFile(entry.path()), ++count;
    return count;
}

} // namespace

int main(int argc, char** argv)
{
    LLVMFuzzerInitialize(&argc, &argv);
    int count = 0;
    for (int argument = 1; argument < argc; ++argument)
        count += RunAll(argv[argument]);
    std::printf("%d inputs replayed\n", count);
    return count == 0 ? 1 : 0; // a corpus that isn't found must not pass for a good one
}
