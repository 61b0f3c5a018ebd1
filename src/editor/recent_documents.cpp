#include "editor/recent_documents.h"

#include "platform/settings.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <algorithm>

namespace velmora
{
namespace
{

namespace fs = std::filesystem;

constexpr const char* storageKey = "recentDocuments"; ///< a JSON array of paths: these may hold any separator

} // namespace

std::vector<fs::path> RecentDocuments::files() const
{
    const std::string stored = m_settings->stringValue(storageKey).value_or("");
    std::vector<fs::path> files;
    for (const auto& entry : QJsonDocument::fromJson(QByteArray::fromStdString(stored)).array()) {
        const fs::path file = entry.toString().toStdString();
        if (file.is_absolute() && files.size() < maximumCount)
            files.push_back(file);
    }
    return files;
}

void RecentDocuments::add(const fs::path& file)
{
    const fs::path absolute = fs::absolute(file).lexically_normal();
    std::vector<fs::path> files = this->files();
    std::erase(files, absolute);
    files.insert(files.begin(), absolute);
    files.resize(std::min(files.size(), maximumCount));
    keep(files);
}

void RecentDocuments::clear()
{
    keep({});
}

void RecentDocuments::keep(const std::vector<fs::path>& files)
{
    QJsonArray entries;
    for (const fs::path& file : files)
        entries.append(QString::fromStdString(file.string()));
    m_settings->setString(storageKey, QJsonDocument(entries).toJson(QJsonDocument::Compact).toStdString());
}

} // namespace velmora
