// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "TrayFixture.h"

#include "Settling.h"

#include <QStandardPaths>
#include <QTest>

#include <tuple>

using namespace Qt::StringLiterals;

namespace lapsa::test {

void TrayFixture::addTaskbars()
{
    QTest::addColumn<Taskbar>("taskbar");
    QTest::newRow("the taskbar of Xfce, status notifier items") << Taskbar::Xfce;
    QTest::newRow("the taskbar of LXQt, status notifier items") << Taskbar::Lxqt;
    QTest::newRow("trayer, embedded icons") << Taskbar::Trayer;
}

void TrayFixture::startTaskbar(Taskbar taskbar, Edge edge)
{
    switch (taskbar) {
    case Taskbar::Xfce:
        m_desktop->startXfceTaskbar(edge);
        break;
    case Taskbar::Lxqt:
        m_desktop->startLxqtTaskbar(edge);
        break;
    case Taskbar::Trayer:
        m_desktop->startTrayer(edge);
        break;
    }
}

void TrayFixture::prepare()
{
    // The taskbar of LXQt would bring a desktop's libraries with it: it serves where it is there anyway.
    if (QByteArray(QTest::currentDataTag()).contains("LXQt") &&
        QStandardPaths::findExecutable(u"lxqt-panel"_s).isEmpty()) {
        QSKIP("lxqt-panel is not installed");
    }
    m_desktop.emplace();
}

void TrayFixture::end()
{
    m_lapsa.reset();
    m_desktop.reset();
}

bool TrayFixture::begin(Edge edge)
{
    QFETCH(const Taskbar, taskbar);
    return begin(taskbar, edge);
}

bool TrayFixture::begin(Taskbar taskbar, Edge edge)
{
    startTaskbar(taskbar, edge);
    m_lapsa.emplace();
    return iconIsThere();
}

bool TrayFixture::iconIsThere() const
{
    constexpr int enough = 3;
    std::optional<QRect> last;
    int seen = 0;
    return QTest::qWaitFor(
        [&] {
            const std::optional<QRect> now = m_desktop->trayIcon();
            seen = now && now == last ? seen + 1 : 0;
            last = now;
            return seen == enough;
        },
        desktopPatience);
}

QPoint TrayFixture::icon() const
{
    std::optional<QRect> found;
    // Out of sight for a moment, as above; clicked where it is not, nothing opens, and the test says so.
    std::ignore = succeeds([&] { return found = m_desktop->trayIcon(); });
    return found.value_or(QRect()).center();
}

void TrayFixture::endsQuietly()
{
    QCOMPARE(m_lapsa->terminate(), 0);
    QCOMPARE(m_lapsa->standardError(), QByteArray());
}

} // namespace lapsa::test
