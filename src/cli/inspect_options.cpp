#include "cli/inspect_options.h"

#include <QCommandLineParser>
#include <QCoreApplication>

namespace velmora::cli
{
namespace
{

ParsedInspectLine wrongUsage(const QString& what)
{
    const QString text = QStringLiteral("velmora-inspect: %1\nTry 'velmora-inspect --help'.\n").arg(what);
    return {.text = text.toStdString(), .exitStatus = 2};
}

} // namespace

ParsedInspectLine parseInspectOptions(const QStringList& arguments)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Looks into a disk image: its form, its volume, its window.\n"
                                                    "Without an option it prints a summary."));
    const QCommandLineOption help({"h", "help"}, QStringLiteral("Show this text."));
    const QCommandLineOption version({"v", "version"}, QStringLiteral("Show the version."));
    const QCommandLineOption list({"l", "list"}, QStringLiteral("List every entry: mode, size, id, path."));
    const QCommandLineOption cat(QStringLiteral("cat"),
                                 QStringLiteral("Write the volume's file at PATH to standard output."),
                                 QStringLiteral("PATH"));
    const QCommandLineOption background(QStringLiteral("background"),
                                        QStringLiteral("Write the window's background picture to FILE as PNG."),
                                        QStringLiteral("FILE"));
    parser.addOptions({help, version, list, cat, background});
    parser.addPositionalArgument(QStringLiteral("IMAGE.dmg"), QStringLiteral("The image to look into."));

    if (!parser.parse(arguments))
        return wrongUsage(parser.errorText());
    if (parser.isSet(help))
        return {.text = parser.helpText().toStdString()};
    if (parser.isSet(version))
        return {.text = "velmora-inspect " + QCoreApplication::applicationVersion().toStdString() + "\n"};
    if (parser.positionalArguments().size() != 1)
        return wrongUsage(QStringLiteral("expected one image"));
    if (int{parser.isSet(list)} + int{parser.isSet(cat)} + int{parser.isSet(background)} > 1)
        return wrongUsage(QStringLiteral("--list, --cat and --background exclude each other"));

    InspectOptions options{.image = parser.positionalArguments().first().toStdString()};
    if (parser.isSet(list)) {
        options.mode = InspectMode::list;
    } else if (parser.isSet(cat)) {
        options.mode = InspectMode::cat;
        options.argument = parser.value(cat).toStdString();
    } else if (parser.isSet(background)) {
        options.mode = InspectMode::background;
        options.argument = parser.value(background).toStdString();
    }
    return {.options = std::move(options)};
}

} // namespace velmora::cli
