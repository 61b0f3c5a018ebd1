#include "cli/new_document.h"

#include "model/document.h"
#include "platform/file_tree.h"

#include <QFile>
#include <QString>

#include <system_error>

namespace velmora::cli
{
namespace fs = std::filesystem;

namespace
{

[[noreturn]] void throwExists(const fs::path& path)
{
    throw FileError("The document " + path.string() + " exists already; --init replaces none");
}

bool isTaken(const fs::path& path)
{
    std::error_code error;
    return fs::exists(fs::symlink_status(path, error));
}

} // namespace

void requireNewDocument(const fs::path& path)
{
    if (isTaken(path))
        throwExists(path);
}

void writeNewDocument(const fs::path& path, const DMGProject& project)
{
    const std::string bytes = Document::encode(project);
    QFile file(QString::fromStdString(path.string()));
    if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly | QIODevice::Unbuffered)) {
        requireNewDocument(path);
        throw FileError("Cannot write the document " + path.string() + ": " + file.errorString().toStdString());
    }
    const auto size = static_cast<qint64>(bytes.size());
    if (file.write(bytes.data(), size) != size) {
        const std::string reason = file.errorString().toStdString();
        file.remove();
        throw FileError("Cannot write the document " + path.string() + ": " + reason);
    }
}

} // namespace velmora::cli
