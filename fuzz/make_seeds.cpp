// make_seeds FOLDER TARGET…: writes the seeds of each target into FOLDER/TARGET.

#include "seeds.h"

#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>

int main(int argc, char** argv)
{
    try {
        for (int i = 2; i < argc; ++i) {
            const auto folder = std::filesystem::path(argv[1]) / argv[i];
            std::filesystem::create_directories(folder);
            for (const auto& [name, bytes] : velmora::fuzz::seedsOf(argv[i])) {
                std::ofstream file;
                file.exceptions(std::ios::badbit | std::ios::failbit);
                file.open(folder / name, std::ios::binary);
                file << velmora::diskimage::textOf(bytes);
            }
        }
        return 0;
    } catch (const std::exception& error) {
        std::cerr << "make_seeds: " << error.what() << "\n";
        return 1;
    }
}
