#include "cli/build_report.h"
#include "cli/file_digest.h"

#include "model/uuid.h"
#include "platform/file_tree.h"
#include "platform/folders.h"

#include <QByteArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velmora::cli
{
namespace
{

QJsonObject object(const BuildReport& report)
{
    return QJsonDocument::fromJson(QByteArray::fromStdString(toJson(report))).object();
}

TEST(BuildReport, hasEveryKeyWhateverHappened)
{
    BuildReport full{.project = "/a\xff\"b", .output = "/o.dmg", .volumeName = "V", .format = "UDZO"};
    full.contentBytes = 3'000'000'000'000;
    full.outputBytes = 1'000'000'000'000;
    full.exitStatus = 0;
    const QJsonObject told = object(full);
    EXPECT_EQ(object({}).keys(), told.keys());
    EXPECT_EQ(told["project"].toString(), QString::fromUtf8("/a\xEF\xBF\xBD\"b"));
    EXPECT_EQ(told["contentBytes"].toInteger(), 3'000'000'000'000);
    EXPECT_DOUBLE_EQ(told["ratio"].toDouble(), 0.333);
    EXPECT_TRUE(object({})["exitStatus"].isNull());
    full.contentBytes = 0;
    EXPECT_TRUE(object(full)["ratio"].isNull());
}

TEST(StepTimes, countEachStepOnce)
{
    StepTimes times;
    for (const char* name : {"a", "a", "b", "a"})
        times.begin(name);
    times.end();
    times.end();
    std::vector<std::string> names;
    double sum = 0;
    for (const auto& step : times.steps()) {
        names.push_back(step.name);
        sum += step.seconds;
    }
    EXPECT_THAT(names, testing::ElementsAre("a", "b", "a"));
    EXPECT_LE(sum, times.total());
}

TEST(FileDigest, isTheKnownOne)
{
    const auto path = Folders::temporary() / ("velmora-digest-test-" + Uuid::random().toString());
    writeFile(path, "abc");
    EXPECT_EQ(sha256(path), "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
    removeTree(path);
    EXPECT_THROW(sha256(path), FileError);
    EXPECT_THROW(sha256(Folders::temporary()), FileError);
}

} // namespace
} // namespace velmora::cli
