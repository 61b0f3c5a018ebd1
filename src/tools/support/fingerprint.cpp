#include "tools/support/fingerprint.h"

#include <openssl/evp.h>

#include <algorithm>
#include <array>
#include <stdexcept>

namespace velmora::tools
{

namespace
{

void require(int result)
{
    if (result != 1)
        throw std::runtime_error("SHA-256 cannot be computed");
}

} // namespace

Fingerprint::Fingerprint() : m_context(EVP_MD_CTX_new(), &EVP_MD_CTX_free)
{
    require(m_context ? EVP_DigestInit_ex(m_context.get(), EVP_sha256(), nullptr) : 0);
}

Fingerprint::~Fingerprint() = default;

void Fingerprint::add(diskimage::ByteView bytes)
{
    require(EVP_DigestUpdate(m_context.get(), bytes.data(), bytes.size()));
}

void Fingerprint::add(std::string_view text)
{
    add(std::uint64_t{text.size()});
    add(diskimage::viewOf(text));
}

void Fingerprint::add(std::uint64_t number)
{
    std::array<std::uint8_t, 8> bytes{};
    diskimage::putBE64(bytes.data(), number);
    add(diskimage::ByteView(bytes));
}

diskimage::Guid Fingerprint::guid(std::string_view purpose) const
{
    Fingerprint copy;
    require(EVP_MD_CTX_copy_ex(copy.m_context.get(), m_context.get()));
    copy.add(purpose);
    std::array<std::uint8_t, EVP_MAX_MD_SIZE> digest{};
    require(EVP_DigestFinal_ex(copy.m_context.get(), digest.data(), nullptr));
    diskimage::Guid guid{};
    std::copy_n(digest.begin(), guid.size(), guid.begin());
    guid[6] = static_cast<std::uint8_t>((guid[6] & 0x0F) | 0x40); // version 4, RFC 4122
    guid[8] = static_cast<std::uint8_t>((guid[8] & 0x3F) | 0x80);
    return guid;
}

} // namespace velmora::tools
