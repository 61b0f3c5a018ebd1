#include "diskimage/base/temporary_folder.h"
#include "diskimage/hfs/editor.h"
#include "diskimage/hfs/names.h"
#include "diskimage/hfs/sample_trees.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>

// Volumes judged by programs that share nothing with us. A test skips itself when its program is not there.
namespace velmora::diskimage::hfs
{
namespace
{

using namespace test;
namespace fs = std::filesystem;

bool isInstalled(const std::string& program)
{
    return std::system(("command -v " + program + " > /dev/null 2>&1").c_str()) == 0;
}

/// The path of every entry below a folder, with the names in the form that a volume gives back.
void listPaths(const Entry& folder, const std::string& path, std::map<std::string, const Entry*>& paths)
{
    for (const auto& child : folder.children) {
        const auto childPath = path + posixName(storedName(child.name));
        paths[childPath] = &child;
        listPaths(child, childPath + "/", paths);
    }
}

/// The path as another program shows it: whatever it composed is decomposed again.
std::string decomposed(const fs::path& path)
{
    std::string result;
    for (const auto& part : path) {
        result += (result.empty() ? "" : "/") + posixName(storedName(part.string()));
    }
    return result;
}

class ForeignReaders : public testing::Test
{
protected:
    ForeignReaders()
    {
        m_tree.name = "Varied";
        // A colon has no place in the file names of some of the programs, nor has a carriage return.
        std::erase_if(m_tree.children, [](const auto& child) {
            return child.name.find(':') != std::string::npos || child.name == "Icon\r";
        });
        m_tree.children.push_back(std::move(crowdedTree(3000).children[0]));
        m_image->resize(requiredBytes(m_tree, {}) + (4 << 20));
        writeVolume(*m_image, m_tree, {.created = 1'700'000'000});
        VolumeEditor editor(*m_image);
        auto added = folder("added later", {file("by the editor", 70000, 99)});
        editor.put("/App.app", added);
        editor.commit(1'700'000'001);
        m_tree = editor.root();
        listPaths(m_tree, "", m_paths);
    }

    [[nodiscard]] fs::path image() const { return m_folder.path() / "volume.img"; }

    /// What a command prints; "IMAGE" in it stands for the image.
    std::string run(std::string command)
    {
        command.replace(command.find("IMAGE"), 5, "\"" + image().string() + "\"");
        const auto output = m_folder.path() / "output";
        EXPECT_EQ(std::system((command + " > \"" + output.string() + "\" 2> /dev/null").c_str()), 0) << command;
        return contentOf(output);
    }

    static std::string contentOf(const fs::path& path)
    {
        std::ifstream file(path, std::ios::binary);
        std::ostringstream text;
        text << file.rdbuf();
        return text.str();
    }

    static std::string bytesOf(const std::function<std::unique_ptr<Source>()>& open)
    {
        const auto source = open ? open() : nullptr;
        return source ? textOf(source->read(0, static_cast<std::size_t>(source->size()))) : std::string();
    }

    diskimage::test::TemporaryFolder m_folder{};
    std::unique_ptr<Storage> m_image = openFile(image(), OpenMode::create);
    Entry m_tree = variedTree();
    std::map<std::string, const Entry*> m_paths{};
};

} // namespace

TEST_F(ForeignReaders, sevenZipExtractsEveryByte)
{
    if (!isInstalled("7zz")) {
        GTEST_SKIP() << "7zz is not installed";
    }
    const auto target = m_folder.path() / "extracted";
    run("7zz x -y -o\"" + target.string() + "\" IMAGE");
    std::map<std::string, fs::path> found;
    for (const auto& entry : fs::recursive_directory_iterator(target / "Varied")) {
        found[decomposed(entry.path().lexically_relative(target / "Varied"))] = entry.path();
    }
    for (const auto& [path, entry] : m_paths) {
        SCOPED_TRACE(path);
        const auto extracted = found[path];
        ASSERT_FALSE(extracted.empty());
        if (entry->kind == EntryKind::folder) {
            EXPECT_TRUE(fs::is_directory(extracted));
        } else if (entry->kind == EntryKind::symlink) {
            EXPECT_TRUE(fs::is_symlink(extracted));
        } else {
            EXPECT_TRUE(contentOf(extracted) == bytesOf(entry->openData));
            for (const auto& [name, value] : entry->attributes) {
                EXPECT_TRUE(contentOf(extracted.string() + ":" + name) == textOf(value)) << name;
            }
            if (entry->resourceSize > 0) {
                EXPECT_TRUE(contentOf(extracted.string() + ":rsrc") == bytesOf(entry->openResource));
            }
        }
    }
}

TEST_F(ForeignReaders, sleuthkitListsAndReadsTheSame)
{
    if (!isInstalled("fls") || !isInstalled("icat")) {
        GTEST_SKIP() << "sleuthkit is not installed";
    }
    std::map<std::string, CatalogId> listed;
    std::istringstream lines(run("fls -rp -f hfs IMAGE"));
    for (std::string line; std::getline(lines, line);) {
        const auto tab = line.find('\t');
        const auto id = static_cast<CatalogId>(std::stoul(line.substr(line.find(' ') + 1)));
        if (id >= 16) {
            listed[decomposed(line.substr(tab + 1))] = id;
        }
    }
    EXPECT_EQ(listed.size(), m_paths.size());
    for (const auto& [path, entry] : m_paths) {
        EXPECT_EQ(listed[path], entry->id) << path;
    }
    for (const auto& [path, entry] : m_paths) {
        const bool isOneOfMany = path.compare(0, 5, "many/") == 0 && entry->id % 100 != 0;
        // It gives up on files with attributes too long for their tree (4.11).
        const bool isBeyondIt = entry->attributes.count("large") != 0;
        if (entry->kind == EntryKind::file && !isOneOfMany && !isBeyondIt) {
            EXPECT_TRUE(run("icat -f hfs IMAGE " + std::to_string(entry->id)) == bytesOf(entry->openData)) << path;
        } else if (entry->kind == EntryKind::symlink) {
            EXPECT_EQ(run("icat -f hfs IMAGE " + std::to_string(entry->id)), entry->linkTarget) << path;
        }
    }
}

TEST_F(ForeignReaders, libfshfsListsTheSame)
{
    if (!isInstalled("fshfsinfo")) {
        GTEST_SKIP() << "fshfsinfo is not installed";
    }
    const auto listing = run("fshfsinfo -H IMAGE");
    for (const auto& [path, entry] : m_paths) {
        // It shows characters beyond the basic plane wrongly.
        if (path.find('\xF0') == path.npos) {
            EXPECT_THAT(listing, testing::HasSubstr("/" + posixName(storedName(entry->name)) + "\n")) << path;
        }
    }
}

} // namespace velmora::diskimage::hfs
