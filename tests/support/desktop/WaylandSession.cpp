// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "WaylandSession.h"

#include <QElapsedTimer>
#include <QFile>
#include <QRegularExpression>
#include <QStringList>
#include <QThread>

namespace lapsa::test {

using namespace Qt::StringLiterals;

namespace {

/// Only a limit for a machine under load; reached when something is broken.
constexpr int patience = 30'000;
constexpr const char* socketName = "lapsa-test";

QByteArray contentOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// The display of the X server that the compositor has made, as it says in its log; empty while it has not.
QByteArray displayIn(const QByteArray& log)
{
    static const QRegularExpression announcement(u"xserver listening on display (:\\d+)"_s);
    return announcement.match(QString::fromUtf8(log)).captured(1).toLatin1();
}

} // namespace

WaylandSession::WaylandSession(XWayland xWayland)
    : m_runtimeFolder(qgetenv("XDG_RUNTIME_DIR"))
    , m_platform(qgetenv("QT_QPA_PLATFORM"))
    , m_display(qgetenv("DISPLAY"))
{
    qputenv("XDG_RUNTIME_DIR", m_folder.path().toUtf8());
    qunsetenv("QT_QPA_PLATFORM");
    qunsetenv("DISPLAY");
    const QString log = m_folder.filePath(u"weston.log"_s);
    QStringList arguments{u"--backend=headless-backend.so"_s, u"--idle-time=0"_s, u"--no-config"_s,
                          u"--socket="_s + QString::fromLatin1(socketName), u"--log="_s + log};
    if (xWayland == XWayland::With) {
        arguments.push_back(u"--xwayland"_s);
    }
    m_compositor.emplace(u"weston"_s, arguments);
    QElapsedTimer elapsed;
    elapsed.start();
    const QString socket = m_folder.filePath(QString::fromLatin1(socketName));
    while (!QFile::exists(socket) || (xWayland == XWayland::With && displayIn(contentOf(log)).isEmpty())) {
        constexpr unsigned long betweenLooks = 20;
        if (elapsed.elapsed() > patience) {
            qFatal("the compositor does not come up");
        }
        QThread::msleep(betweenLooks);
    }
    qputenv("WAYLAND_DISPLAY", socketName);
    if (xWayland == XWayland::With) {
        qputenv("DISPLAY", displayIn(contentOf(log)));
    }
}

WaylandSession::~WaylandSession()
{
    m_compositor.reset();
    qunsetenv("WAYLAND_DISPLAY");
    qunsetenv("DISPLAY");
    if (!m_display.isEmpty()) {
        qputenv("DISPLAY", m_display);
    }
    qputenv("QT_QPA_PLATFORM", m_platform);
    qputenv("XDG_RUNTIME_DIR", m_runtimeFolder);
}

} // namespace lapsa::test
