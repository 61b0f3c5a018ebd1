#include "diskimage/hfs/check_tree.h"

#include "diskimage/base/error.h"
#include "diskimage/hfs/catalog_records.h"
#include "diskimage/hfs/format.h"

#include <algorithm>
#include <tuple>
#include <unordered_set>

namespace velmora::diskimage::hfs
{
namespace
{

/// Trees beyond are refused: no real one comes near, and looking at each node would take too long.
constexpr std::uint32_t mostNodes = 1 << 22;

/// What the kinds of tree differ in.
struct TreeRules {
    std::uint32_t smallestNode;
    std::uint16_t maxKeyLength;
    std::uint32_t attributes;
};

TreeRules rulesOf(TreeKind kind)
{
    switch (kind) {
    case TreeKind::extents:
        return {512, extentsMaxKeyLength, treeBigKeys};
    case TreeKind::catalog:
        return {4096, catalogMaxKeyLength, treeBigKeys | treeVariableIndexKeys};
    case TreeKind::attributes:
        break;
    }
    return {4096, attributesMaxKeyLength, treeBigKeys | treeVariableIndexKeys};
}

/// Whether a key's length suits what is in it. `key` begins with the length field.
bool isKeyWellFormed(TreeKind kind, ByteView key)
{
    const std::size_t length = getBE16(key.data());
    switch (kind) {
    case TreeKind::extents:
        return length == extentsMaxKeyLength;
    case TreeKind::catalog:
        return length >= 6 && length <= catalogMaxKeyLength && length == 6U + 2U * getBE16(key.data() + 6);
    case TreeKind::attributes:
        break;
    }
    return length >= 12 && length <= attributesMaxKeyLength && length == 12U + 2U * getBE16(key.data() + 12);
}

int compareKeys(const TreeExpectation& expectation, ByteView a, ByteView b)
{
    const auto orderOf = [](const auto& left, const auto& right) { return left < right ? -1 : right < left ? 1 : 0; };
    switch (expectation.kind) {
    case TreeKind::extents: {
        const auto parts = [](ByteView key) {
            return std::tuple(getBE32(key.data() + 4), key[2], getBE32(key.data() + 8));
        };
        return orderOf(parts(a), parts(b));
    }
    case TreeKind::catalog: {
        const auto left = readCatalogKey(a);
        const auto right = readCatalogKey(b);
        return left.parentId != right.parentId ? orderOf(left.parentId, right.parentId)
                                               : compareNames(left.name, right.name, expectation.order);
    }
    case TreeKind::attributes:
        break;
    }
    const auto left = readAttributeKey(a);
    const auto right = readAttributeKey(b);
    return orderOf(std::tie(left.fileId, left.name, left.startBlock),
                   std::tie(right.fileId, right.name, right.startBlock));
}

class TreeChecker
{
public:
    TreeChecker(const Source& file, const TreeExpectation& expectation, CheckReport& report)
        : m_file(file),
          m_expectation(expectation),
          m_report(report),
          m_name(nameOfTree(expectation.kind)),
          m_header(readTreeHeader(file, m_name))
    {
    }

    std::optional<RecordList> check()
    {
        if (m_header.totalNodes > mostNodes) {
            fault("has too many nodes to be checked");
            return std::nullopt;
        }
        checkHeader();
        checkLevels();
        checkMap();
        if (m_expectation.unusedNodesAreZero) {
            checkUnusedNodes();
        }
        return m_isReadable ? std::optional(std::move(m_leaves)) : std::nullopt;
    }

private:
    void fault(const std::string& what) { m_report.add("The " + m_name + " " + what + "."); }
    void faultIn(std::uint32_t node, const std::string& what)
    {
        fault("has a fault in node " + std::to_string(node) + ": " + what);
    }
    void expect(bool holds, const char* what)
    {
        if (!holds) {
            fault(std::string("has a wrong ") + what + " in its header");
        }
    }

    [[nodiscard]] Bytes readNode(std::uint32_t number) const
    {
        return m_file.read(std::uint64_t{number} * m_header.nodeSize, m_header.nodeSize);
    }
    /// Offset of a record; of the one behind the last: of the free space.
    [[nodiscard]] static std::size_t offsetIn(const Bytes& node, std::size_t i)
    {
        return getBE16(node.data() + node.size() - 2 * (i + 1));
    }

    void checkHeader()
    {
        const auto rules = rulesOf(m_expectation.kind);
        const auto node = readNode(0);
        expect(m_header.nodeSize >= rules.smallestNode, "node size");
        expect(m_header.totalNodes == m_file.size() / m_header.nodeSize, "number of nodes");
        expect(m_header.maxKeyLength == rules.maxKeyLength, "longest key");
        expect(m_header.type == 0, "tree type");
        expect(m_header.attributes == rules.attributes, "set of attributes");
        expect(m_header.keyCompareType == m_expectation.keyCompareType, "key order");
        expect(m_header.clumpSize == m_expectation.clumpSize, "clump size");
        expect(getBE32(node.data() + 4) == 0 && node[9] == 0 && getBE16(node.data() + 12) == 0, "node descriptor");
        expect(getBE16(node.data() + 10) == 3 && offsetIn(node, 0) == 14 && offsetIn(node, 1) == 120 &&
                   offsetIn(node, 2) == headerMapOffset && offsetIn(node, 3) == m_header.nodeSize - 8,
               "set of records");
    }

    void checkLevels()
    {
        if (m_header.depth == 0) {
            expect(m_header.rootNode == 0 && m_header.firstLeaf == 0 && m_header.lastLeaf == 0 &&
                       m_header.leafRecords == 0,
                   "root or leaf number although the tree is empty,");
            return;
        }
        if (m_header.depth > maximumTreeDepth) {
            fault("is " + std::to_string(m_header.depth) + " levels deep");
            m_isReadable = false;
            return;
        }
        std::vector<Child> level{{m_header.rootNode, {}}};
        for (auto height = m_header.depth; height >= 1 && !level.empty(); --height) {
            if (height == 1) {
                expect(m_header.firstLeaf == level.front().number, "first leaf");
                expect(m_header.lastLeaf == level.back().number, "last leaf");
            }
            level = checkLevel(level, height);
        }
        expect(m_header.leafRecords == m_leaves.size(), "number of leaf records");
    }

    /// A node and the key that the level above gives it; the root has none.
    struct Child {
        std::uint32_t number;
        Bytes key;
    };

    /// Checks all nodes of a level and returns those of the level below; of the leaves none.
    std::vector<Child> checkLevel(const std::vector<Child>& level, std::uint16_t height)
    {
        std::vector<Child> below;
        Bytes previousKey;
        for (std::size_t i = 0; i < level.size(); ++i) {
            const auto number = level[i].number;
            if (number == 0 || number >= m_header.totalNodes || !m_used.insert(number).second) {
                fault("refers to node " + std::to_string(number) + ", which does not exist or was there before");
                m_isReadable = false;
                continue;
            }
            const auto node = readNode(number);
            const auto kind = height == 1 ? nodeKindLeaf : nodeKindIndex;
            if (node[8] != kind || node[9] != height) {
                faultIn(number, "its kind or height is wrong");
                m_isReadable = m_isReadable && node[8] == kind;
            }
            if (getBE32(node.data()) != (i + 1 < level.size() ? level[i + 1].number : 0) ||
                getBE32(node.data() + 4) != (i > 0 ? level[i - 1].number : 0)) {
                faultIn(number, "its links to its neighbours are wrong");
            }
            if (getBE16(node.data() + 12) != 0) {
                faultIn(number, "its reserved field is not zero");
            }
            if (!checkRecords(number, node, height == 1, level[i].key, previousKey, below)) {
                m_isReadable = false;
            }
        }
        return below;
    }

    bool checkRecords(std::uint32_t number, const Bytes& node, bool isLeaf, const Bytes& keyAbove, Bytes& previousKey,
                      std::vector<Child>& below)
    {
        const std::size_t count = getBE16(node.data() + 10);
        if (count == 0 || count > (node.size() - nodeDescriptorSize - 2) / 4) {
            faultIn(number, "its number of records is impossible");
            return false;
        }
        const auto tableStart = node.size() - 2 * (count + 1);
        if (offsetIn(node, 0) != nodeDescriptorSize) {
            faultIn(number, "its first record is misplaced");
            return false;
        }
        for (std::size_t i = 0; i < count; ++i) {
            const auto start = offsetIn(node, i);
            const auto end = offsetIn(node, i + 1);
            if (end % 2 != 0 || end > tableStart || start + 4 > end) {
                faultIn(number, "the places of its records are wrong");
                return false;
            }
            const auto record = ByteView(node).subspan(start, end - start);
            const auto keySize = std::size_t{2} + getBE16(record.data());
            if (keySize > record.size() || keySize < 8 ||
                (m_expectation.kind == TreeKind::attributes && keySize < 14) ||
                !isKeyWellFormed(m_expectation.kind, record)) {
                faultIn(number, "the length of a key is wrong");
                return false;
            }
            const auto key = record.first(keySize);
            if (i == 0 && !keyAbove.empty() && !std::equal(key.begin(), key.end(), keyAbove.begin(), keyAbove.end())) {
                faultIn(number, "the level above gives it another first key");
            }
            if (!previousKey.empty() && compareKeys(m_expectation, previousKey, key) >= 0) {
                faultIn(number, "its keys are out of order or equal");
            }
            previousKey.assign(key.begin(), key.end());
            if (isLeaf) {
                m_leaves.add(key, record.subspan(keySize));
            } else if (record.size() != keySize + 4) {
                faultIn(number, "an index record has a wrong length");
                return false;
            } else {
                below.push_back({getBE32(record.data() + keySize), previousKey});
            }
        }
        return true;
    }

    void checkMap()
    {
        const auto header = readNode(0);
        const auto add = [&](const Bytes& node, std::size_t start, std::size_t end) {
            m_map.insert(m_map.end(), node.begin() + static_cast<std::ptrdiff_t>(start),
                         node.begin() + static_cast<std::ptrdiff_t>(end));
        };
        m_used.insert(0);
        add(header, headerMapOffset, m_header.nodeSize - 8);
        std::uint32_t previous = 0;
        for (auto number = getBE32(header.data()); number != 0;) {
            if (number >= m_header.totalNodes || !m_used.insert(number).second) {
                fault("has a wrong link to map node " + std::to_string(number));
                break;
            }
            const auto node = readNode(number);
            if (node[8] != nodeKindMap || node[9] != 0 || getBE16(node.data() + 10) != 1 || offsetIn(node, 0) != 14 ||
                offsetIn(node, 1) != m_header.nodeSize - 6 || getBE32(node.data() + 4) != previous) {
                faultIn(number, "it is no proper map node");
                break;
            }
            add(node, 14, m_header.nodeSize - 6);
            previous = number;
            number = getBE32(node.data());
        }
        if (m_map.size() * std::uint64_t{8} < m_header.totalNodes) {
            fault("has a node map that is too short");
            return;
        }
        for (std::uint32_t i = 0; i < m_header.totalNodes; ++i) {
            if (isMarked(i) != (m_used.count(i) != 0)) {
                fault("marks node " + std::to_string(i) + " wrongly as " + (isMarked(i) ? "used" : "free"));
            }
        }
        expect(m_header.freeNodes == m_header.totalNodes - m_used.size(), "number of free nodes");
    }

    [[nodiscard]] bool isMarked(std::uint32_t node) const { return (m_map[node / 8] & 0x80 >> node % 8) != 0; }

    void checkUnusedNodes()
    {
        for (std::uint32_t i = 0; i < m_header.totalNodes; ++i) {
            if (m_used.count(i) != 0) {
                continue;
            }
            const auto node = readNode(i);
            if (std::any_of(node.begin(), node.end(), [](std::uint8_t byte) { return byte != 0; })) {
                faultIn(i, "it is not used and yet not all zero");
            }
        }
    }

    const Source& m_file;
    const TreeExpectation& m_expectation;
    CheckReport& m_report;
    std::string m_name;
    TreeHeader m_header;
    RecordList m_leaves{};
    Bytes m_map{};
    std::unordered_set<std::uint32_t> m_used{};
    bool m_isReadable = true;
};

} // namespace

std::string nameOfTree(TreeKind kind)
{
    return kind == TreeKind::catalog ? "catalog" : kind == TreeKind::extents ? "extents tree" : "attributes tree";
}

std::optional<RecordList> checkTree(const Source& file, const TreeExpectation& expectation, CheckReport& report)
{
    try {
        return TreeChecker(file, expectation, report).check();
    } catch (const DiskImageError& error) {
        report.add(error.what());
        return std::nullopt;
    }
}

} // namespace velmora::diskimage::hfs
