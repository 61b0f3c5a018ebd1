#include "cli/headless.h"

#include "platform/version.h"

namespace velmora::cli
{

HeadlessApplication::HeadlessApplication(int& argc, char** argv, const char* name)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qInstallMessageHandler([](QtMsgType type, const QMessageLogContext&, const QString& text) {
        // A missing runtime folder or a picture's odd profile is nothing a person at a build server can act on.
        if (type == QtCriticalMsg || type == QtFatalMsg)
            std::fprintf(stderr, "%s\n", qPrintable(text));
    });
    m_application = std::make_unique<QGuiApplication>(argc, argv);
    QCoreApplication::setApplicationName(QString::fromLatin1(name));
    QCoreApplication::setApplicationVersion(QString::fromLatin1(programVersion));
}

} // namespace velmora::cli
