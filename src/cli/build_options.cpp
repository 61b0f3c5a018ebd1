#include "cli/build_options.h"

#include "cli/result_file.h"
#include "cli/usage_error.h"

#include <QCommandLineParser>
#include <QCoreApplication>

#include <filesystem>
#include <map>

namespace velmora::cli
{
namespace
{

constexpr const char* description =
    "Builds the disk image that a Velmora project describes, or one for an application with the factory window.\n\n"
    "The build log goes to standard output, errors and warnings to standard error.\n"
    "Exit status: 0 done, 1 failed, 2 wrong usage, 128+n stopped by signal n.\n\n"
    "  velmora-build MyApp.app MyApp.dmg              a first image without a project\n"
    "  velmora-build MyApp.app --init MyApp.velmora   the project of it, for the editor\n"
    "  velmora-build --check MyApp.velmora            what would go wrong, without building\n"
    "  velmora-build --strict MyApp.velmora MyApp.dmg the image, or an error";

QCommandLineOption flag(const char* name, const char* text)
{
    return {QString::fromLatin1(name), QString::fromLatin1(text)};
}

QCommandLineOption valued(const char* name, const char* value, const char* text)
{
    return {QString::fromLatin1(name), QString::fromLatin1(text), QString::fromLatin1(value)};
}

struct Parser {
    QCommandLineOption help{{"h", "help"}, QStringLiteral("Show this text.")};
    QCommandLineOption version{{"v", "version"}, QStringLiteral("Show the version.")};
    QCommandLineOption check = flag("check", "Only report every problem of the project, a line each.");
    QCommandLineOption init =
        valued("init", "FILE", "Write the project for an application as a new document for the editor.");
    QCommandLineOption map = valued("map", "FROM=TO",
                                    "Read absolute paths below FROM from TO instead; may be repeated, the longest FROM "
                                    "that fits counts.");
    QCommandLineOption volumeName = valued("volume-name", "NAME",
                                           "Name the volume NAME. {name} and {version} stand for what the application "
                                           "says about itself.");
    QCommandLineOption password = flag("password-stdin", "Read the encryption password from standard input.");
    QCommandLineOption strict = flag("strict", "Let any warning fail, and read the finished image back: window layout, "
                                               "background, icon positions, volume icon.");
    QCommandLineOption quiet = flag("quiet", "Print no log and no progress.");
    QCommandLineOption log = valued("log", "FILE", "Also write the build log to FILE.");
    QCommandLineOption report = valued("report", "FILE",
                                       "Write what was done as JSON to FILE; to standard output instead of the log "
                                       "when FILE is \"-\".");
    QCommandLineParser parser{};

    Parser()
    {
        parser.setApplicationDescription(QString::fromLatin1(description));
        parser.addOptions({help, version, check, init, map, volumeName, password, strict, quiet, log, report});
        parser.addPositionalArgument(QStringLiteral("PROJECT"),
                                     QStringLiteral("The project (a document) to build, or an application."),
                                     QStringLiteral("PROJECT.velmora|MyApp.app"));
        parser.addPositionalArgument(
            QStringLiteral("OUTPUT.dmg"),
            QStringLiteral("The image to write. An older one is replaced when the build succeeds."));
    }

    [[nodiscard]] std::optional<std::string> value(const QCommandLineOption& option) const
    {
        return parser.isSet(option) ? std::optional(parser.value(option).toStdString()) : std::nullopt;
    }
};

void takeNames(const Parser& given, BuildOptions& options)
{
    const QStringList names = given.parser.positionalArguments();
    const bool needsOutput = !options.check && !options.initDocument;
    if (names.size() != 2 && (needsOutput || names.size() != 1))
        throw UsageError(std::string("expected PROJECT.velmora or an application") +
                         (needsOutput ? " and OUTPUT.dmg" : ", and perhaps OUTPUT.dmg") + ", got " +
                         std::to_string(names.size()) + " argument(s)");
    options.project = names[0].toStdString();
    if (names.size() == 1)
        return;
    // The image tool appends ".dmg" to other names, and the image would land elsewhere than asked.
    if (!names[1].endsWith(QStringLiteral(".dmg"), Qt::CaseInsensitive))
        throw UsageError("the output's name must end in \".dmg\": " + names[1].toStdString());
    options.output = names[1].toStdString();
}

void takeMaps(const Parser& given, BuildOptions& options)
{
    for (const QString& value : given.parser.values(given.map)) {
        const auto equals = value.indexOf(u'=');
        const QString from = value.left(equals);
        const QString to = value.mid(equals + 1);
        if (equals < 0 || !from.startsWith(u'/') || !to.startsWith(u'/'))
            throw UsageError("--map expects two absolute paths, FROM=TO: " + value.toStdString());
        options.maps.emplace_back(from.toStdString(), to.toStdString());
    }
}

void requireSense(const BuildOptions& options)
{
    if (options.check && options.initDocument)
        throw UsageError("--check writes nothing, and --init does: give one of them");
    if (options.check && (options.logFile || options.report))
        throw UsageError("--log and --report are about a build, and --check builds nothing");
    if (options.output.empty() && !options.check && (options.logFile || options.report || options.strict))
        throw UsageError("--log, --report and --strict are about a build, and without OUTPUT.dmg nothing is built");
    if (options.initDocument && !options.initDocument->ends_with(".velmora"))
        throw UsageError("the document's name must end in \".velmora\": " + *options.initDocument);
}

std::filesystem::path absolutePath(const char* what, const std::string& name)
{
    if (name.empty())
        throw UsageError(std::string(what) + " needs a file name, but the one given is empty");
    try {
        return std::filesystem::absolute(name).lexically_normal();
    } catch (const std::filesystem::filesystem_error& error) { // the current folder is gone
        throw UsageError(std::string(what) + " cannot be found: " + name + ": " + error.code().message());
    }
}

/// One file cannot be two things.
void requireDifferentFiles(const BuildOptions& options)
{
    std::map<std::filesystem::path, const char*> files;
    const auto add = [&](const char* what, const std::string& name) {
        const auto path = absolutePath(what, name);
        if (const auto [earlier, isNew] = files.emplace(path, what); !isNew)
            throw UsageError(std::string(earlier->second) + " and " + what + " are the same file: " + name);
    };
    add("the project", options.project);
    if (!options.output.empty())
        add("the output", options.output);
    if (options.initDocument)
        add("--init", *options.initDocument);
    if (options.logFile)
        add("--log", *options.logFile);
    if (options.report && options.report != "-")
        add("--report", *options.report);
}

BuildOptions optionsFrom(const Parser& given)
{
    BuildOptions options{.volumeName = given.value(given.volumeName),
                         .initDocument = given.value(given.init),
                         .logFile = given.value(given.log),
                         .report = given.value(given.report),
                         .check = given.parser.isSet(given.check),
                         .passwordFromInput = given.parser.isSet(given.password),
                         .quiet = given.parser.isSet(given.quiet),
                         .strict = given.parser.isSet(given.strict)};
    takeNames(given, options);
    takeMaps(given, options);
    if (options.report == standardOutput)
        options.report = "-";
    requireSense(options);
    requireDifferentFiles(options);
    if (options.report == "-")
        options.quiet = true;
    return options;
}

} // namespace

ParsedCommandLine parseBuildOptions(const QStringList& arguments)
{
    Parser given;
    try {
        if (!given.parser.parse(arguments))
            throw UsageError(given.parser.errorText().toStdString());
        if (given.parser.isSet(given.help))
            return {.text = given.parser.helpText().toStdString()};
        if (given.parser.isSet(given.version))
            return {.text = "velmora-build " + QCoreApplication::applicationVersion().toStdString() + "\n"};
        return {.options = optionsFrom(given)};
    } catch (const UsageError& error) {
        return {.text = std::string("velmora-build: ") + error.what() + "\nTry 'velmora-build --help'.\n",
                .exitStatus = 2};
    }
}

} // namespace velmora::cli
