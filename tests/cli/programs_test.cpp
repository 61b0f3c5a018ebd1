// Runs velmora-build and velmora-inspect as a build server does: real programs, real tools, a bare environment.

#include "model/document.h"
#include "platform/child_process.h"
#include "platform/file_tree.h"
#include "platform/folders.h"

#include <QByteArray>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <thread>

namespace velmora
{
namespace
{

namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::Not;

const std::string build = std::string(VELMORA_TEST_BIN_DIR) + "/velmora-build";
const std::string inspect = std::string(VELMORA_TEST_BIN_DIR) + "/velmora-inspect";

class Programs : public testing::Test
{
protected:
    Programs()
    {
        fs::create_directories(m_folder / "tmp");
        fs::create_directories(m_folder / "out");
        writeFile(m_folder / "payload.txt", "the payload\n");
        project.volumeName = "Test Volume";
        project.backgroundKind = BackgroundKind::gradient;
        project.items = {
            {.sourcePath = (m_folder / "payload.txt").string(), .displayName = "Pay: load.txt", .x = 100, .y = 120},
            {.displayName = "Applications", .x = 300, .y = 120, .symlinkTarget = "/Applications"}};
    }
    ~Programs() override { removeTree(m_folder); }

    std::string document() const
    {
        const fs::path path = m_folder / "project.velmora";
        writeFile(path, Document::encode(project));
        return path.string();
    }
    std::string image() const { return (m_folder / "out" / "Image.dmg").string(); }

    /// Nothing but what is given here is in the program's environment: no display, no home, no runtime folder.
    ChildResult run(std::vector<std::string> command, std::optional<std::string> input = std::nullopt,
                    const StopToken& stop = {}) const
    {
        std::vector<std::string> arguments{"-i", "PATH=/usr/bin:/bin", "TMPDIR=" + (m_folder / "tmp").string(),
                                           "ASAN_OPTIONS=" + sanitizerOptions()};
        arguments.insert(arguments.end(), command.begin(), command.end());
        return runChild({.program = "/usr/bin/env", .arguments = arguments, .input = std::move(input), .stop = stop});
    }

    /// An application "Fake" 1.2 with an icon of its own.
    std::string application() const
    {
        const fs::path path = m_folder / "Fake.app";
        fs::create_directories(path / "Contents/MacOS");
        fs::create_directories(path / "Contents/Resources");
        writeFile(path / "Contents/Info.plist",
                  "<plist version=\"1.0\"><dict><key>CFBundleIconFile</key><string>Fake</string>"
                  "<key>CFBundleShortVersionString</key><string>1.2</string></dict></plist>");
        writeFile(path / "Contents/MacOS/Fake", "#!/bin/sh\n");
        writeFile(path / "Contents/Resources/Fake.icns", std::string("icns\0\0\0\10", 8));
        return path.string();
    }
    std::string file(const char* name) const { return (m_folder / name).string(); }

    /// What a build leaves behind in the temporary folder and beside its output.
    std::vector<std::string> remains() const
    {
        std::vector<std::string> names;
        for (const auto& entry : fs::recursive_directory_iterator(m_folder / "tmp")) {
            const std::string name = entry.path().filename().string();
            if (name.starts_with("velmora-build-") || name.ends_with(".session") || name.ends_with(".applescript"))
                names.push_back(name);
        }
        for (const auto& entry : fs::directory_iterator(m_folder / "out")) {
            if (entry.path() != fs::path(image()))
                names.push_back(entry.path().filename().string());
        }
        return names;
    }

    DMGProject project;
    fs::path m_folder = Folders::temporary() / ("velmora-cli-test-" + Uuid::random().toString());

private:
    static std::string sanitizerOptions()
    {
        const char* options = std::getenv("ASAN_OPTIONS");
        return options == nullptr ? "" : options;
    }
};

TEST_F(Programs, buildAnImageThatReadsBackAsDesigned)
{
    const ChildResult result = run({build, "--strict", document(), image()});
    ASSERT_EQ(result.exitCode, 0) << result.output << result.error;
    EXPECT_EQ(result.error, "");
    EXPECT_THAT(result.output, HasSubstr("Staging 2 item(s)…\n"));
    EXPECT_THAT(result.output, Not(HasSubstr("\x1b")));
    EXPECT_THAT(result.output, HasSubstr("✅ Done: " + image() + "\n"));
    EXPECT_THAT(remains(), testing::IsEmpty());

    const ChildResult summary = run({inspect, image()});
    EXPECT_EQ(summary.exitCode, 0) << summary.error;
    EXPECT_THAT(summary.output, HasSubstr("UDZO"));
    EXPECT_THAT(summary.output, HasSubstr("\"Test Volume\""));
    EXPECT_THAT(summary.output, HasSubstr("600 x 400 points at (200, 120)"));
    EXPECT_THAT(summary.output, HasSubstr("(100, 120)  Pay: load.txt"));
    EXPECT_THAT(run({inspect, "--list", image()}).output, HasSubstr("/Applications -> /Applications"));
    EXPECT_EQ(run({inspect, "--cat", "/Pay: load.txt", image()}).output, "the payload\n");
    const std::string png = (m_folder / "background.png").string();
    EXPECT_EQ(run({inspect, "--background", png, image()}).exitCode, 0);
    EXPECT_THAT(readFile(png, 1 << 24), testing::StartsWith("\x89PNG"));
}

TEST_F(Programs, buildAFirstImageForAnApplicationAndItsProject)
{
    const std::string init = file("Fake.velmora");
    const std::string report = file("report.json");
    const ChildResult first = run({"SOURCE_DATE_EPOCH=1700000000", build, "--strict", "--volume-name",
                                   "{name} {version}", "--init", init, "--report", report, application(), image()});
    ASSERT_EQ(first.exitCode, 0) << first.output << first.error;
    EXPECT_EQ(first.error, "");
    const ChildResult summary = run({inspect, image()});
    EXPECT_THAT(summary.output, HasSubstr("\"Fake 1.2\""));
    EXPECT_THAT(summary.output, HasSubstr("(169, 166)  Fake.app"));
    EXPECT_THAT(summary.output, HasSubstr("(450, 166)  Applications"));
    EXPECT_THAT(summary.output, HasSubstr("Icon        own"));

    const auto told = QJsonDocument::fromJson(QByteArray::fromStdString(readFile(report, 1 << 20))).object();
    EXPECT_EQ(told["exitStatus"].toInt(-1), 0);
    EXPECT_EQ(told["outputBytes"].toInteger(), static_cast<qint64>(fs::file_size(image())));
    EXPECT_EQ(told["sha256"].toString().toStdString(), run({"sha256sum", image()}).output.substr(0, 64));
    EXPECT_EQ(told["steps"].toArray().last()["name"].toString(), "digest");

    const std::string again = file("out/Image.dmg");
    const std::string bytes = readFile(image(), 1 << 26);
    const ChildResult second = run({"SOURCE_DATE_EPOCH=1700000000", build, "--quiet", init, again});
    ASSERT_EQ(second.exitCode, 0) << second.error;
    EXPECT_TRUE(readFile(again, 1 << 26) == bytes) << "the document is the same project";

    const std::string document = readFile(init, 1 << 20);
    const ChildResult third = run({build, "--init", init, application()});
    EXPECT_EQ(third.exitCode, 1);
    EXPECT_THAT(third.error, HasSubstr("exists already"));
    EXPECT_EQ(readFile(init, 1 << 20), document);
}

TEST_F(Programs, checkAProjectWithoutBuildingIt)
{
    EXPECT_EQ(run({build, "--check", application(), image()}).output, "No problems found.\n");
    project.format = DMGFormat::compressed;
    project.items[1].x = 5000;
    const ChildResult warned = run({build, "--check", document()});
    EXPECT_EQ(warned.exitCode, 0);
    EXPECT_EQ(warned.output, "No errors found.\n");
    EXPECT_THAT(warned.error, HasSubstr("warning: items[1]: "));
    EXPECT_EQ(run({build, "--check", "--strict", document()}).exitCode, 1);

    project.items[0].sourcePath = "/gone";
    project.signingMode = SigningMode::sign;
    const ChildResult failed = run({build, "--check", document(), file("nowhere/a.dmg")});
    EXPECT_EQ(failed.exitCode, 1);
    EXPECT_EQ(failed.output, "");
    for (const char* line : {"error: items[0].sourcePath: ", "error: codeSignIdentity: ", "error: output: ",
                             "error: signingMode: Code signing is not possible here: codesign: "})
        EXPECT_THAT(failed.error, HasSubstr(line));
    EXPECT_THAT(remains(), testing::IsEmpty());
    EXPECT_FALSE(fs::exists(image()));
}

TEST_F(Programs, reportFailuresToo)
{
    const std::string report = file("report.json");
    writeFile(report, "an older report");
    project.encryption = ImageEncryption::aes256;
    project.encryptionPassword = "correct horse";
    const std::vector<std::string> command{build, "--report", report, document(), image()};
    EXPECT_EQ(run(command).exitCode, 1);
    const std::string text = readFile(report, 1 << 20);
    EXPECT_THAT(text, Not(HasSubstr("correct horse")));
    const auto told = QJsonDocument::fromJson(QByteArray::fromStdString(text)).object();
    EXPECT_EQ(told["exitStatus"].toInt(), 1);
    EXPECT_TRUE(told["error"].toString().startsWith("hdiutil convert failed"));
    EXPECT_EQ(told["steps"].toArray().last()["name"].toString(), "convert");
    EXPECT_TRUE(told["sha256"].isNull());

    const ChildResult printed = run({build, "--report", "-", file("none.velmora"), image()});
    EXPECT_EQ(printed.exitCode, 1);
    const auto object = QJsonDocument::fromJson(QByteArray::fromStdString(printed.output)).object();
    EXPECT_TRUE(object["error"].toString().contains("none.velmora")) << printed.output;
    EXPECT_EQ(run({build, "--report", file("nowhere/r.json"), document(), image()}).exitCode, 1);
}

TEST_F(Programs, failWithAStatusAndASentence)
{
    const auto missing = (m_folder / "nothing.velmora").string();
    const auto broken = (m_folder / "broken.velmora").string();
    writeFile(broken, R"({"volumeName": 5})");
    const struct {
        const char* name;
        std::vector<std::string> command;
        int status;
        const char* complaint;
    } cases[] = {
        {"usage", {build}, 2, "expected PROJECT.velmora"},
        {"no such document", {build, missing, image()}, 1, "nothing.velmora"},
        {"a broken document", {build, broken, image()}, 1, "broken.velmora: "},
        {"the output is a folder", {build, document(), (m_folder / "out").string() + "/.dmg/"}, 2, ".dmg"},
        {"the output's folder is missing", {build, document(), (m_folder / "none/a.dmg").string()}, 1, "none"},
        {"not an image", {inspect, broken}, 1, "broken.velmora: "},
        {"a folder that is no application", {build, m_folder.string(), image()}, 1, "no Contents/Info.plist"},
        {"a project for a project", {build, "--init", file("new.velmora"), document()}, 2, "is a document"},
        {"maps for an application", {build, "--map", "/a=/b", application(), image()}, 2, "--map"},
        {"a volume name of nothing", {build, "--volume-name", "{nme}", application(), image()}, 1, "{nme}"},
        {"a name that commands the terminal",
         {build, "--volume-name", "{\x1b[2J}", application(), image()},
         1,
         "holds { [2J}"},
        {"a name from no application",
         {build, "--volume-name", "{name}", document(), image()},
         1,
         "payload.txt\" is not an application"},
        {"no password", {build, "--password-stdin", document(), image()}, 1, "password"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const ChildResult result = run(c.command, "");
        EXPECT_EQ(result.exitCode, c.status);
        EXPECT_THAT(result.error, HasSubstr(c.complaint));
    }
    fs::create_directory(m_folder / "out" / "Image.dmg");
    EXPECT_THAT(run({build, document(), image()}).error, HasSubstr("The output is a folder"));
}

TEST_F(Programs, keepAnOlderImageWhenTheBuildFails)
{
    writeFile(image(), "the older image");
    project.items[0].sourcePath = "/does/not/exist";
    const ChildResult result = run({build, document(), image()});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.error, HasSubstr("Missing source file:\n/does/not/exist"));
    EXPECT_EQ(readFile(image(), 100), "the older image");
    EXPECT_THAT(remains(), testing::IsEmpty());
}

TEST_F(Programs, letAWarningFailAStrictBuildOnly)
{
    project.backgroundKind = BackgroundKind::image;
    project.backgroundImagePath = "/does/not/exist.png";
    EXPECT_EQ(run({build, "--quiet", "--strict", document(), image()}).exitCode, 1);
    EXPECT_FALSE(fs::exists(image()));
    const ChildResult relaxed = run({build, "--quiet", document(), image()});
    EXPECT_EQ(relaxed.exitCode, 0);
    EXPECT_EQ(relaxed.output, "");
    EXPECT_THAT(relaxed.error, HasSubstr("warning: "));
    EXPECT_TRUE(fs::exists(image()));
}

TEST_F(Programs, keepThePasswordOutOfLogAndArguments)
{
    project.encryption = ImageEncryption::aes256;
    const std::string secret = "correct horse battery";
    const std::string log = (m_folder / "log.txt").string();
    const ChildResult result = run({build, "--password-stdin", "--log", log, document(), image()}, secret + "\n");
    EXPECT_EQ(result.exitCode, 1) << "encryption is not available yet and must say so";
    EXPECT_THAT(result.error, HasSubstr("hdiutil convert failed:\n"));
    for (const std::string& text : {result.output, result.error, readFile(log, 1 << 20)})
        EXPECT_THAT(text, Not(HasSubstr(secret)));
}

TEST_F(Programs, cleanUpWhenASignalStopsThem)
{
    // The staged file is large enough for the signal to find the build at work, wherever that is by then.
    {
        std::ofstream large(m_folder / "payload.txt", std::ios::binary);
        std::string block(1 << 20, 'x');
        for (int i = 0; i < 64; ++i) {
            block[static_cast<std::size_t>(i)] = 'y';
            large << block;
        }
    }
    writeFile(image(), "the older image");
    for (const int milliseconds : {150, 600, 1500}) {
        SCOPED_TRACE(milliseconds);
        const std::string seconds = std::to_string(milliseconds / 1000.0);
        const ChildResult result =
            run({"timeout", "--preserve-status", "-s", "INT", seconds, build, document(), image()});
        EXPECT_EQ(result.exitCode, 130) << result.output << result.error;
        EXPECT_THAT(remains(), testing::IsEmpty());
        EXPECT_EQ(readFile(image(), 100), "the older image");
    }
}

} // namespace
} // namespace velmora
