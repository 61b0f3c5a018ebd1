#pragma once

#include "diskimage/base/partition_table.h"
#include "diskimage/base/storage.h"

#include <memory>
#include <string_view>

struct evp_md_ctx_st;

namespace velmora::tools
{

/// A running SHA-256 from which identifiers are made that are the same for the same content.
class Fingerprint
{
public:
    Fingerprint();
    ~Fingerprint();
    Fingerprint(const Fingerprint&) = delete;
    Fingerprint& operator=(const Fingerprint&) = delete;

    void add(diskimage::ByteView bytes);
    /// A text with its length, so that "ab", "c" and "a", "bc" differ.
    void add(std::string_view text);
    void add(std::uint64_t number);

    /// An identifier in the form of a random UUID, made from all that was added and `purpose`. More can be added after.
    [[nodiscard]] diskimage::Guid guid(std::string_view purpose) const;

private:
    std::unique_ptr<evp_md_ctx_st, void (*)(evp_md_ctx_st*)> m_context;
};

} // namespace velmora::tools
