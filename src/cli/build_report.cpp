#include "cli/build_report.h"

#include "cli/result_file.h"
#include "platform/version.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QString>

#include <cmath>

namespace velmora::cli
{
namespace
{

/// Raised when a key changes its meaning or goes away; new keys may come at any time.
constexpr int reportVersion = 1;

QJsonValue json(const std::string& text)
{
    return QString::fromStdString(text); // a path that is no UTF-8 still gives valid JSON
}

QJsonValue json(std::int64_t number)
{
    return QJsonValue(static_cast<qint64>(number));
}

QJsonValue json(int number)
{
    return number;
}

template <typename T>
QJsonValue json(const std::optional<T>& value)
{
    return value ? json(*value) : QJsonValue(QJsonValue::Null);
}

QJsonValue json(const std::vector<std::string>& texts)
{
    QJsonArray array;
    for (const std::string& text : texts)
        array.append(json(text));
    return array;
}

double rounded(double value)
{
    return std::round(value * 1000) / 1000;
}

QJsonValue json(const std::vector<StepTimes::Step>& steps)
{
    QJsonArray array;
    for (const StepTimes::Step& step : steps)
        array.append(QJsonObject{{"name", json(step.name)}, {"seconds", rounded(step.seconds)}});
    return array;
}

QJsonValue ratio(const BuildReport& report)
{
    if (!report.outputBytes || report.contentBytes.value_or(0) <= 0)
        return QJsonValue::Null;
    return rounded(static_cast<double>(*report.outputBytes) / static_cast<double>(*report.contentBytes));
}

} // namespace

std::string toJson(const BuildReport& report)
{
    const QJsonObject object{
        {"reportVersion", reportVersion},
        {"version", QString::fromLatin1(programVersion)},
        {"project", json(report.project)},
        {"output", json(report.output)},
        {"volumeName", json(report.volumeName)},
        {"format", json(report.format)},
        {"steps", json(report.times.steps())},
        {"seconds", rounded(report.times.total())},
        {"contentBytes", json(report.contentBytes)},
        {"imageBytes", json(report.imageBytes)},
        {"outputBytes", json(report.outputBytes)},
        {"ratio", ratio(report)},
        {"sha256", json(report.sha256)},
        {"warnings", json(report.warnings)},
        {"faults", json(report.faults)},
        {"error", json(report.error)},
        {"exitStatus", json(report.exitStatus)},
    };
    return QJsonDocument(object).toJson(QJsonDocument::Indented).toStdString();
}

void writeReport(const BuildReport& report, const std::string& path)
{
    writeResult(path == "-" ? standardOutput : path, toJson(report));
}

} // namespace velmora::cli
