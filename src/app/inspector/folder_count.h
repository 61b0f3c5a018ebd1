#pragma once

#include "platform/stop_token.h"

#include <QObject>
#include <QThreadPool>

#include <cstdint>
#include <optional>
#include <string>

namespace velmora
{

/// What is in a folder and everything below it.
struct FolderContent {
    std::uintmax_t bytes = 0;
    std::uintmax_t files = 0; ///< everything but folders
    bool operator==(const FolderContent&) const = default;
};

/// Counts what is in a folder on a worker. Links are not followed; folders that cannot be read count as empty.
class FolderCount : public QObject
{
    Q_OBJECT

public:
    explicit FolderCount(QObject* parent = nullptr);
    /// Stops counting and waits.
    ~FolderCount() override;

    /// Begins with `folder` unless it is the one that was counted last; gives up any other.
    void count(const std::string& folder);
    /// From now on files may have changed: the next count() begins anew, the old content stands meanwhile.
    void expire() { m_expired = true; }
    /// Gives up counting and forgets what was counted.
    void clear();
    /// Nothing while it is not known.
    [[nodiscard]] const std::optional<FolderContent>& content() const { return m_content; }

signals:
    /// The content is known.
    void counted();

private:
    std::string m_folder{};
    bool m_expired = false;
    std::optional<FolderContent> m_content{};
    std::optional<StopSource> m_stop{};
    QThreadPool m_worker{};
};

} // namespace velmora
