#include "cli/file_digest.h"

#include "platform/file_tree.h"

#include <openssl/evp.h>

#include <array>
#include <fstream>
#include <memory>

namespace velmora::cli
{
namespace
{

constexpr std::size_t pieceSize = 1 << 20;

void require(bool holds, const std::filesystem::path& file)
{
    if (!holds)
        throw FileError("The SHA-256 of " + file.string() + " cannot be computed");
}

} // namespace

std::string sha256(const std::filesystem::path& file)
{
    const std::unique_ptr<EVP_MD_CTX, decltype(&EVP_MD_CTX_free)> context(EVP_MD_CTX_new(), &EVP_MD_CTX_free);
    require(context && EVP_DigestInit_ex(context.get(), EVP_sha256(), nullptr) == 1, file);
    std::ifstream stream(file, std::ios::binary);
    require(stream.is_open(), file);
    std::vector<char> piece(pieceSize);
    while (stream) {
        stream.read(piece.data(), static_cast<std::streamsize>(piece.size()));
        require(EVP_DigestUpdate(context.get(), piece.data(), static_cast<std::size_t>(stream.gcount())) == 1, file);
    }
    require(stream.eof() && !stream.bad(), file);

    std::array<unsigned char, EVP_MAX_MD_SIZE> digest{};
    unsigned int size = 0;
    require(EVP_DigestFinal_ex(context.get(), digest.data(), &size) == 1, file);
    constexpr std::string_view digits = "0123456789abcdef";
    std::string text;
    for (unsigned int i = 0; i < size; ++i) {
        text += digits[digest[i] >> 4];
        text += digits[digest[i] & 15];
    }
    return text;
}

} // namespace velmora::cli
