// conversion_bench DISK.dmg: the time of a UDZO conversion of a raw disk beside the time that libdeflate alone takes
// for the same chunks, level and cores: what reading, checksums, ordering and writing cost. Medians of five runs.

#include "diskimage/udif/image.h"
#include "platform/folders.h"

#include <libdeflate.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <thread>
#include <vector>

namespace
{

using namespace velmora::diskimage;
using Clock = std::chrono::steady_clock;

constexpr int level = 9; // what the pipeline asks for
constexpr std::size_t chunkSize = 1024 * 1024;
constexpr int runs = 5;

template <typename Work>
double medianSeconds(const Work& work)
{
    std::vector<double> seconds;
    for (int i = 0; i < runs; ++i) {
        const auto begin = Clock::now();
        work();
        seconds.push_back(std::chrono::duration<double>(Clock::now() - begin).count());
    }
    std::sort(seconds.begin(), seconds.end());
    return seconds[seconds.size() / 2];
}

bool allZero(const Bytes& bytes)
{
    return std::all_of(bytes.begin(), bytes.end(), [](std::uint8_t b) { return b == 0; });
}

std::vector<Bytes> chunksOf(const Source& disk)
{
    std::vector<Bytes> chunks;
    for (std::uint64_t at = 0; at < disk.size(); at += chunkSize) {
        Bytes chunk = disk.read(at, static_cast<std::size_t>(std::min<std::uint64_t>(chunkSize, disk.size() - at)));
        if (!allZero(chunk))
            chunks.push_back(std::move(chunk));
    }
    return chunks;
}

std::uint64_t compressAll(const std::vector<Bytes>& chunks, unsigned cores)
{
    std::atomic<std::size_t> next = 0;
    std::atomic<std::uint64_t> total = 0;
    std::vector<std::thread> workers;
    for (unsigned i = 0; i < cores; ++i) {
        workers.emplace_back([&] {
            libdeflate_compressor* compressor = libdeflate_alloc_compressor(level);
            Bytes out(libdeflate_zlib_compress_bound(compressor, chunkSize));
            for (std::size_t at = next++; at < chunks.size(); at = next++)
                total +=
                    libdeflate_zlib_compress(compressor, chunks[at].data(), chunks[at].size(), out.data(), out.size());
            libdeflate_free_compressor(compressor);
        });
    }
    for (std::thread& worker : workers)
        worker.join();
    return total;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: conversion_bench DISK.dmg\n");
        return 2;
    }
    try {
        const auto disk = openFile(argv[1], OpenMode::readOnly);
        const unsigned cores = std::max(1U, std::thread::hardware_concurrency());
        const std::filesystem::path target = velmora::Folders::temporary() / "velmora-conversion-bench.dmg";
        std::uint64_t size = 0;
        const double whole = medianSeconds([&] {
            const auto out = openFile(target, OpenMode::create);
            udif::convert(*disk, *out, {.format = udif::Format::udzo, .zlibLevel = level});
            size = out->size();
        });
        std::filesystem::remove(target);
        const std::vector<Bytes> chunks = chunksOf(*disk);
        std::uint64_t compressed = 0;
        const double alone = medianSeconds([&] { compressed = compressAll(chunks, cores); });
        std::printf("disk %llu MB, %zu chunks with content, %u cores, level %d\n",
                    static_cast<unsigned long long>(disk->size() >> 20), chunks.size(), cores, level);
        std::printf("conversion   %7.2f s  %llu bytes\n", whole, static_cast<unsigned long long>(size));
        std::printf("compression  %7.2f s  %llu bytes (libdeflate alone)\n", alone,
                    static_cast<unsigned long long>(compressed));
        std::printf("ratio        %7.2f\n", whole / alone);
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "conversion_bench: %s\n", error.what());
        return 1;
    }
}
