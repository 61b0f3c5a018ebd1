// velmora: the editor.

#include "app/application.h"
#include "app/program_options.h"
#include "platform/signals.h"
#include "platform/version.h"

#include <QApplication>
#include <QImageReader>

#include <iostream>

namespace
{

/// A background picture of 100 megapixels, decoded.
constexpr int pictureMemory = 1024; // MB

} // namespace

int main(int argc, char** argv)
{
    // Help needs no display.
    if (const auto answer = velmora::answerWithoutWindow({argv + 1, argv + argc})) {
        std::cout << *answer;
        return 0;
    }
    velmora::StopSource stop;
    velmora::stopOnSignals(stop);
    QApplication::setApplicationName(QStringLiteral("Velmora"));
    QApplication::setApplicationVersion(QString::fromLatin1(velmora::programVersion));
    QApplication::setDesktopFileName(QStringLiteral("velmora"));
    QApplication application(argc, argv);
    QImageReader::setAllocationLimit(pictureMemory);

    const velmora::ProgramOptions options = velmora::parseProgramOptions({argv + 1, argv + argc});
    if (!options.error.empty()) {
        std::cerr << options.error;
        return 2;
    }
    velmora::Application velmora(stop);
    velmora.start(options.documents);
    return QApplication::exec();
}
