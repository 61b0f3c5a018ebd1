#pragma once

#include <QGuiApplication>
#include <QStringList>

#include <memory>

namespace velmora::cli
{

/// The application object that drawing text needs, without a display: it never looks for one, whatever the environment
/// says, and Qt's own remarks do not mix with the program's output.
class HeadlessApplication
{
public:
    HeadlessApplication(int& argc, char** argv, const char* name);
    [[nodiscard]] QStringList arguments() const { return QGuiApplication::arguments(); }

private:
    std::unique_ptr<QGuiApplication> m_application;
};

} // namespace velmora::cli
