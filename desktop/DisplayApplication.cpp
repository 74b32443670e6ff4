// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "DisplayApplication.h"

#include <QApplication>
#include <QDir>
#include <QFile>

#include <optional>

namespace lapsa {

using namespace Qt::StringLiterals;

namespace {

/// A toolkit setting that is read from the environment at startup and not passed on to programs that are started later.
/// A value that the user has set stays.
class EnvironmentDefault final
{
public:
    EnvironmentDefault(const char* name, const char* value)
        : m_name(name)
        , m_setByUser(qEnvironmentVariableIsSet(name))
    {
        if (!m_setByUser) {
            qputenv(name, value);
        }
    }

    EnvironmentDefault(const EnvironmentDefault&) = delete;
    EnvironmentDefault& operator=(const EnvironmentDefault&) = delete;

    ~EnvironmentDefault()
    {
        if (!m_setByUser) {
            qunsetenv(m_name);
        }
    }

private:
    const char* m_name;
    bool m_setByUser;
};

} // namespace

QString ownIconThemes(const QString& id)
{
    const QString folder = QCoreApplication::applicationDirPath();
    // In the build folder, or installed.
    for (const QString& themes : {folder + u"/share/icons"_s, QDir::cleanPath(folder + u"/../share/icons"_s)}) {
        if (QFile::exists(u"%1/hicolor/symbolic/apps/%2-symbolic.svg"_s.arg(themes, id))) {
            return themes;
        }
    }
    return {};
}

bool hasDisplay()
{
    return !qEnvironmentVariableIsEmpty("DISPLAY") || !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") ||
           !qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM");
}

std::unique_ptr<QApplication> makeDisplayApplication(int& argc, char** argv)
{
    const bool wayland = !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
    const bool x11 = !qEnvironmentVariableIsEmpty("DISPLAY");
    std::optional<EnvironmentDefault> platform;
    if (wayland && x11) {
        platform.emplace("QT_QPA_PLATFORM", "xcb;wayland");
    }
    // Nothing is drawn with OpenGL, and its drivers would take most of the process's memory.
    const EnvironmentDefault drawingOnX11("QT_XCB_GL_INTEGRATION", "none");
    const EnvironmentDefault drawingOnWayland("QT_WAYLAND_DISABLE_HW_INTEGRATION", "1");
    return std::make_unique<QApplication>(argc, argv);
}

} // namespace lapsa
