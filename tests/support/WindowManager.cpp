// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "WindowManager.h"

#include <QDeadlineTimer>
#include <QThread>

namespace lapsa::test {

using namespace Qt::StringLiterals;

namespace {

/// Only a limit for a machine under load; reached when something is broken.
constexpr int patience = 30'000;

bool isThere()
{
    const QByteArray answer = outputOf(u"xprop"_s, {u"-root"_s, u"_NET_SUPPORTING_WM_CHECK"_s});
    return !answer.contains("no such atom") && !answer.contains("not found");
}

} // namespace

WindowManager::WindowManager()
    : m_process(u"xfwm4"_s, {u"--compositor=off"_s})
{
    constexpr unsigned long betweenLooks = 30;
    const QDeadlineTimer deadline(patience);
    while (!isThere()) {
        if (deadline.hasExpired()) {
            qFatal("the window manager does not come up");
        }
        QThread::msleep(betweenLooks);
    }
}

} // namespace lapsa::test
