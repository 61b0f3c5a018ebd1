#include "app/ports/system_desktop.h"

#include "app/ports/file_manager.h"
#include "app/text.h"

#include <QDesktopServices>
#include <QUrl>

namespace velmora
{

void SystemDesktop::reveal(const std::filesystem::path& file)
{
    showInFileManager(file);
}

void SystemDesktop::openFolder(const std::filesystem::path& folder)
{
    QDesktopServices::openUrl(QUrl::fromLocalFile(qtPath(folder)));
}

void SystemDesktop::openAddress(const std::string& address)
{
    const QUrl url(qtText(address), QUrl::StrictMode);
    // Any other scheme would start a program of the sender's choice.
    if (url.isValid() && (url.scheme() == QLatin1String("https") || url.scheme() == QLatin1String("http")))
        QDesktopServices::openUrl(url);
}

} // namespace velmora
