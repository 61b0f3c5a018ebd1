// The limits that scripts/bench compares with, and the conversion itself without a process around it.
//   engine_bench convert DISK.dmg SCRATCH   seconds of five conversions to UDZO, and of libdeflate alone on the chunks
//   engine_bench compress FOLDER            seconds that libdeflate alone takes for the files of a folder
//   engine_bench levels DISK.dmg            sizes and seconds of zlib's and libdeflate's levels, one core

#include "diskimage/udif/image.h"
#include "diskimage/udif/zlib_codec.h"

#include <libdeflate.h>
#include <zlib.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <thread>
#include <vector>

namespace
{

using namespace velmora::diskimage;
namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

constexpr int zlibLevel = 9; // what the pipeline asks for
constexpr std::size_t chunkSize = 1024 * 1024;
constexpr int runs = 5;

double secondsOf(const std::function<void()>& work)
{
    const auto begin = Clock::now();
    work();
    return std::chrono::duration<double>(Clock::now() - begin).count();
}

/// The 1 MiB pieces of a disk that hold anything.
std::vector<Bytes> chunksOf(const Source& disk)
{
    std::vector<Bytes> chunks;
    for (std::uint64_t at = 0; at < disk.size(); at += chunkSize) {
        Bytes chunk = disk.read(at, static_cast<std::size_t>(std::min<std::uint64_t>(chunkSize, disk.size() - at)));
        if (!isZero(chunk))
            chunks.push_back(std::move(chunk));
    }
    return chunks;
}

/// Compresses `count` pieces on all cores; `piece` gives one, in the buffer it is handed or elsewhere.
void compressAll(std::size_t count, const std::function<ByteView(std::size_t, Bytes&)>& piece)
{
    std::atomic<std::size_t> next = 0;
    std::vector<std::thread> workers;
    for (unsigned i = 0; i < std::max(1U, std::thread::hardware_concurrency()); ++i) {
        workers.emplace_back([&] {
            libdeflate_compressor* compressor = libdeflate_alloc_compressor(udif::libdeflateLevel(zlibLevel));
            Bytes in(chunkSize);
            Bytes out(libdeflate_zlib_compress_bound(compressor, chunkSize));
            for (std::size_t at = next++; at < count; at = next++) {
                const ByteView bytes = piece(at, in);
                libdeflate_zlib_compress(compressor, bytes.data(), bytes.size(), out.data(), out.size());
            }
            libdeflate_free_compressor(compressor);
        });
    }
    for (std::thread& worker : workers)
        worker.join();
}

/// One after the other, so that whatever else the machine does hits both.
int convert(const std::string& path, const fs::path& scratch)
{
    const auto disk = openFile(path, OpenMode::readOnly);
    const std::vector<Bytes> chunks = chunksOf(*disk);
    for (int i = 0; i < runs; ++i) {
        const double whole = secondsOf([&] {
            const auto out = openFile(scratch, OpenMode::create);
            udif::convert(*disk, *out, {.format = udif::Format::udzo, .zlibLevel = zlibLevel});
        });
        const double alone = secondsOf(
            [&] { compressAll(chunks.size(), [&](std::size_t at, Bytes&) { return ByteView(chunks[at]); }); });
        std::printf("%.3f %.3f\n", whole, alone);
    }
    fs::remove(scratch);
    return 0;
}

int compress(const std::string& folder)
{
    struct Piece {
        fs::path file{};
        std::uintmax_t offset = 0;
        std::size_t length = 0;
    };
    std::vector<Piece> pieces;
    for (const auto& entry : fs::recursive_directory_iterator(folder)) {
        if (entry.is_symlink() || !entry.is_regular_file())
            continue;
        for (std::uintmax_t at = 0; at < entry.file_size(); at += chunkSize)
            pieces.push_back(
                {entry.path(), at, static_cast<std::size_t>(std::min(chunkSize + at, entry.file_size()) - at)});
    }
    const double seconds = secondsOf([&] {
        compressAll(pieces.size(), [&](std::size_t at, Bytes& buffer) {
            std::ifstream file(pieces[at].file, std::ios::binary);
            file.seekg(static_cast<std::streamoff>(pieces[at].offset));
            file.read(reinterpret_cast<char*>(buffer.data()), static_cast<std::streamsize>(pieces[at].length));
            return ByteView(buffer).first(pieces[at].length);
        });
    });
    std::printf("%.3f\n", seconds);
    return 0;
}

/// What chunks take in an image: those that do not shrink are stored.
void printLevel(const char* library, int level, const std::vector<Bytes>& chunks,
                const std::function<std::size_t(const Bytes&, Bytes&)>& pack)
{
    Bytes out(2 * chunkSize);
    std::uint64_t total = 0;
    const std::clock_t begin = std::clock();
    for (const Bytes& chunk : chunks)
        total += std::min(pack(chunk, out), chunk.size());
    const double seconds = static_cast<double>(std::clock() - begin) / CLOCKS_PER_SEC;
    std::printf("| %s %d | %llu | %.2f |\n", library, level, static_cast<unsigned long long>(total), seconds);
    std::fflush(stdout);
}

int levels(const std::string& path)
{
    const auto disk = openFile(path, OpenMode::readOnly);
    const std::vector<Bytes> chunks = chunksOf(*disk);
    std::printf("%zu chunks of 1 MiB\n| level | bytes | seconds |\n|---|---|---|\n", chunks.size());
    for (int level = 1; level <= 9; ++level) {
        printLevel("zlib", level, chunks, [&](const Bytes& chunk, Bytes& out) {
            uLongf size = out.size();
            compress2(out.data(), &size, chunk.data(), chunk.size(), level);
            return static_cast<std::size_t>(size);
        });
    }
    for (int level = 1; level <= 12; ++level) {
        libdeflate_compressor* compressor = libdeflate_alloc_compressor(level);
        printLevel("libdeflate", level, chunks, [&](const Bytes& chunk, Bytes& out) {
            return libdeflate_zlib_compress(compressor, chunk.data(), chunk.size(), out.data(), out.size());
        });
        libdeflate_free_compressor(compressor);
    }
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    try {
        if (arguments.size() == 3 && arguments[0] == "convert")
            return convert(arguments[1], arguments[2]);
        if (arguments.size() == 2 && arguments[0] == "compress")
            return compress(arguments[1]);
        if (arguments.size() == 2 && arguments[0] == "levels")
            return levels(arguments[1]);
        std::fprintf(stderr, "usage: engine_bench convert DISK SCRATCH | compress FOLDER | levels DISK\n");
        return 2;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "engine_bench: %s\n", error.what());
        return 1;
    }
}
