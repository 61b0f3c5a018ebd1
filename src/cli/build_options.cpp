#include "cli/build_options.h"

#include <QCommandLineParser>
#include <QCoreApplication>

namespace velmora::cli
{
namespace
{

ParsedCommandLine wrongUsage(const QString& what)
{
    const QString text = QStringLiteral("velmora-build: %1\nTry 'velmora-build --help'.\n").arg(what);
    return {.text = text.toStdString(), .exitStatus = 2};
}

} // namespace

ParsedCommandLine parseBuildOptions(const QStringList& arguments)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Builds the disk image that a Velmora project describes.\n\n"
                       "The build log goes to standard output, errors and warnings to standard error.\n"
                       "Exit status: 0 done, 1 failed, 2 wrong usage, 128+n stopped by signal n."));
    const QCommandLineOption help({"h", "help"}, QStringLiteral("Show this text."));
    const QCommandLineOption version({"v", "version"}, QStringLiteral("Show the version."));
    const QCommandLineOption map(QStringLiteral("map"),
                                 QStringLiteral("Read absolute paths below FROM from TO instead; may be repeated, the "
                                                "longest FROM that fits counts."),
                                 QStringLiteral("FROM=TO"));
    const QCommandLineOption volumeName(QStringLiteral("volume-name"),
                                        QStringLiteral("Name the volume NAME instead of what the project says."),
                                        QStringLiteral("NAME"));
    const QCommandLineOption password(QStringLiteral("password-stdin"),
                                      QStringLiteral("Read the encryption password from standard input."));
    const QCommandLineOption strict(QStringLiteral("strict"),
                                    QStringLiteral("Let any warning fail the build, and read the finished image back: "
                                                   "window layout, background, icon positions, volume icon."));
    const QCommandLineOption quiet(QStringLiteral("quiet"), QStringLiteral("Print no log and no progress."));
    const QCommandLineOption log(QStringLiteral("log"), QStringLiteral("Also write the build log to FILE."),
                                 QStringLiteral("FILE"));
    parser.addOptions({help, version, map, volumeName, password, strict, quiet, log});
    parser.addPositionalArgument(QStringLiteral("PROJECT.velmora"), QStringLiteral("The project to build."));
    parser.addPositionalArgument(
        QStringLiteral("OUTPUT.dmg"),
        QStringLiteral("The image to write. An older one is replaced when the build succeeds."));

    if (!parser.parse(arguments))
        return wrongUsage(parser.errorText());
    if (parser.isSet(help))
        return {.text = parser.helpText().toStdString()};
    if (parser.isSet(version))
        return {.text = "velmora-build " + QCoreApplication::applicationVersion().toStdString() + "\n"};

    const QStringList names = parser.positionalArguments();
    if (names.size() != 2)
        return wrongUsage(
            QStringLiteral("expected PROJECT.velmora and OUTPUT.dmg, got %1 argument(s)").arg(names.size()));
    // The image tool appends ".dmg" to other names, and the image would land elsewhere than asked.
    if (!names[1].endsWith(QStringLiteral(".dmg"), Qt::CaseInsensitive))
        return wrongUsage(QStringLiteral("the output's name must end in \".dmg\": %1").arg(names[1]));

    BuildOptions options{.project = names[0].toStdString(),
                         .output = names[1].toStdString(),
                         .passwordFromInput = parser.isSet(password),
                         .quiet = parser.isSet(quiet),
                         .strict = parser.isSet(strict)};
    for (const QString& value : parser.values(map)) {
        const auto equals = value.indexOf(u'=');
        const QString from = value.left(equals);
        const QString to = value.mid(equals + 1);
        if (equals < 0 || !from.startsWith(u'/') || !to.startsWith(u'/'))
            return wrongUsage(QStringLiteral("--map expects two absolute paths, FROM=TO: %1").arg(value));
        options.maps.emplace_back(from.toStdString(), to.toStdString());
    }
    if (parser.isSet(volumeName))
        options.volumeName = parser.value(volumeName).toStdString();
    if (parser.isSet(log))
        options.logFile = parser.value(log).toStdString();
    return {.options = std::move(options)};
}

} // namespace velmora::cli
