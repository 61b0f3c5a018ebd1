#pragma once

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace velmora::diskimage::hfs
{

/// The faults found so far. Checking stops, by an exception of its own, when there are enough of them.
class CheckReport
{
public:
    struct Full {
    };

    explicit CheckReport(std::size_t limit) : m_limit(limit) {}

    void add(std::string fault)
    {
        if (m_faults.size() >= m_limit) {
            throw Full{};
        }
        m_faults.push_back(std::move(fault));
    }
    /// Adds a fault unless `holds`.
    void expect(bool holds, const char* fault)
    {
        if (!holds) {
            add(fault);
        }
    }
    std::vector<std::string> take() { return std::move(m_faults); }

private:
    std::size_t m_limit;
    std::vector<std::string> m_faults{};
};

} // namespace velmora::diskimage::hfs
