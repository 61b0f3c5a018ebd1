#include "support/target.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace velmora::fuzz
{

using namespace diskimage;

void expect(bool holds, const char* expectation)
{
    if (holds)
        return;
    std::fprintf(stderr, "expectation failed: %s\n", expectation);
    std::abort();
}

void expectNone(const std::vector<std::string>& faults, const char* expectation)
{
    if (!faults.empty())
        std::fprintf(stderr, "%s\n", faults.front().c_str());
    expect(faults.empty(), expectation);
}

std::uint8_t InputReader::byte()
{
    const ByteView one = bytes(1);
    return one.empty() ? std::uint8_t{0} : one[0];
}

std::uint16_t InputReader::word()
{
    const unsigned high = byte();
    return static_cast<std::uint16_t>(high << 8 | byte());
}

ByteView InputReader::bytes(std::size_t most)
{
    const ByteView part = m_rest.first(std::min(most, m_rest.size()));
    m_rest = m_rest.subspan(part.size());
    return part;
}

} // namespace velmora::fuzz
