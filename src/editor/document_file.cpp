#include "editor/document_file.h"

#include "model/document.h"
#include "platform/file_tree.h"

#include <QFile>
#include <QString>

#include <optional>
#include <string>
#include <system_error>

namespace velmora
{
namespace
{

namespace fs = std::filesystem;

/// The file behind a link, which need not exist. A ring of links comes back as one of them.
fs::path followLinks(fs::path path)
{
    std::error_code error;
    for (int links = 0; links < 40 && fs::is_symlink(fs::symlink_status(path, error)); ++links)
        path = path.parent_path() / fs::read_symlink(path, error);
    return path;
}

/// Makes an empty file that nobody else can open, not even for a moment.
void createForOwnerOnly(const fs::path& path)
{
    QFile file(QString::fromStdString(path.string()));
    if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly, QFile::ReadOwner | QFile::WriteOwner))
        throw FileError("Could not create \"" + path.string() + "\": " + file.errorString().toStdString() + ".");
}

/// A file before it is written over.
class FormerFile
{
public:
    explicit FormerFile(fs::path path) : m_path(std::move(path))
    {
        std::error_code ignored;
        m_existed = fs::exists(m_path, ignored);
        if (!m_existed)
            return;
        m_time = fs::last_write_time(m_path, ignored);
        m_content = read();
    }

    [[nodiscard]] bool existed() const { return m_existed; }

    /// Undoes what a failed write left; returns what a person must know about it, with a blank in front.
    [[nodiscard]] std::string restore() const
    {
        std::error_code error;
        if (!m_existed) {
            fs::remove(m_path, error);
            return error ? " An incomplete file was left there." : "";
        }
        if (m_content ? read() == m_content : fs::last_write_time(m_path, error) == m_time && !error)
            return {}; // it was not even opened
        try {
            if (!m_content)
                throw FileError("it could not be read before.");
            writeFile(m_path, *m_content);
        } catch (const FileError& failure) {
            return std::string(" Its former content is lost: ") + failure.what();
        }
        return " Its former content was put back.";
    }

private:
    [[nodiscard]] std::optional<std::string> read() const
    {
        try {
            return readFile(m_path, Document::maximumSize);
        } catch (const FileError&) {
            return std::nullopt; // then there is nothing to put back, which restore() tells if it matters
        }
    }

    fs::path m_path{};
    bool m_existed = false;
    fs::file_time_type m_time{};
    std::optional<std::string> m_content{};
};

} // namespace

void writeDocumentFile(const fs::path& file, std::string_view bytes, DocumentAccess access)
{
    if (bytes.size() > Document::maximumSize)
        throw FileError("The document would be larger than " + std::to_string(Document::maximumSize) +
                        " bytes and could not be opened again.");
    const fs::path target = followLinks(file);
    const FormerFile former(target);
    if (!former.existed() && access == DocumentAccess::ownerOnly)
        createForOwnerOnly(target);
    try {
        writeFile(target, bytes);
    } catch (const FileError& failure) {
        throw FileError(failure.what() + former.restore());
    }
}

} // namespace velmora
