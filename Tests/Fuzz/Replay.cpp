// Stands in for libFuzzer in an ordinary build: tries all files of a folder, then so many variations of them, always the same.

#include <filesystem>
#include <fstream>
#include <iostream>
#include <random>
#include <set>
#include <sstream>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

int main(int /*count*/, char** arguments) {
    const auto check = [](const std::string& input) {
        // In memory of just its size, so that the address sanitizer sees a read beyond the end.
        const std::vector<std::uint8_t> copy(input.begin(), input.end());
        LLVMFuzzerTestOneInput(copy.data(), copy.size());
    };
    std::vector<std::string> inputs;
    const std::filesystem::directory_iterator folder(arguments[1]);
    for (const auto& path : std::set<std::filesystem::path>(begin(folder), end(folder))) {
        std::cout << path.string() << std::endl;
        std::ostringstream text;
        text << std::ifstream(path, std::ios::binary).rdbuf();
        check(inputs.emplace_back(text.str()));
    }
    std::mt19937_64 random(1);
    const auto below = [&random](std::size_t limit) { return random() % limit; };
    for (int left = std::stoi(arguments[2]); left > 0; --left) {
        std::string input = inputs.at(below(inputs.size()));
        for (auto changes = 1 + below(4); changes > 0; --changes) {
            const auto& other = inputs.at(below(inputs.size()));
            const std::string any(below(2), static_cast<char>(random()));
            const auto some = other.substr(below(other.size() + 1), below(8));
            input.replace(below(input.size() + 1), below(5), below(2) == 0 ? any : some);
        }
        check(input);
    }
}
