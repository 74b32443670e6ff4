// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "TrayPrograms.h"

#include <QDBusMessage>
#include <QEventLoop>
#include <QFile>
#include <QTimer>

#include <sys/prctl.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>

using namespace Qt::StringLiterals;

namespace lapsa::bench {

namespace {

constexpr int patience = 20'000;

} // namespace

Announcements::Announcements(const QString& address)
    : m_bus(QDBusConnection::connectToBus(address, u"bench"_s))
{
    m_bus.connect(u"org.kde.StatusNotifierWatcher"_s, u"/StatusNotifierWatcher"_s, u"org.kde.StatusNotifierWatcher"_s,
                  u"StatusNotifierItemRegistered"_s, this, SLOT(note(QString)));
}

bool Announcements::waitForOne()
{
    QEventLoop loop;
    QTimer::singleShot(patience, &loop, &QEventLoop::quit);
    connect(this, &Announcements::announced, &loop, &QEventLoop::quit);
    m_announced = false;
    loop.exec();
    return m_announced;
}

void Announcements::activateLast()
{
    QDBusMessage click =
        QDBusMessage::createMethodCall(m_service, m_path, u"org.kde.StatusNotifierItem"_s, u"Activate"_s);
    click.setArguments({0, 0});
    m_bus.send(click);
}

void Announcements::note(const QString& item)
{
    // The name on the bus, followed by the path of the object.
    const qsizetype slash = item.indexOf(u'/');
    m_service = slash < 0 ? item : item.first(slash);
    m_path = slash < 0 ? u"/StatusNotifierItem"_s : item.sliced(slash);
    m_announced = true;
    emit announced();
}

Running::Running(const Candidate& candidate)
{
    m_process.setStandardErrorFile(QProcess::nullDevice());
    m_process.setStandardOutputFile(QProcess::nullDevice());
    m_process.setChildProcessModifier([] { ::prctl(PR_SET_PDEATHSIG, SIGKILL); });
    m_process.start(candidate.program, candidate.arguments);
    m_process.waitForStarted(patience);
}

Running::~Running()
{
    // Not every program ends when asked to.
    constexpr int politePatience = 500;
    m_process.terminate();
    if (!m_process.waitForFinished(politePatience)) {
        m_process.kill();
        m_process.waitForFinished(patience);
    }
}

QString Running::proc(const QString& file) const
{
    return u"/proc/%1/%2"_s.arg(m_process.processId()).arg(file);
}

double Running::pss() const
{
    constexpr double kibibytesInMegabyte = 1000.0 * 1000 / 1024;
    return numberIn(proc(u"smaps_rollup"_s), "Pss:") / kibibytesInMegabyte;
}

double Running::processorSeconds() const
{
    QFile file(proc(u"stat"_s));
    if (!file.open(QIODevice::ReadOnly)) {
        return 0;
    }
    // After the name, which can contain anything: utime and stime are fields 14 and 15 of proc(5).
    const QByteArray line = file.readAll();
    const QList<QByteArray> fields = line.mid(line.lastIndexOf(')') + 2).split(' ');
    constexpr int utime = 11;
    return (fields[utime].toDouble() + fields[utime + 1].toDouble()) / double(::sysconf(_SC_CLK_TCK));
}

double numberIn(const QString& path, QByteArrayView name)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        return 0;
    }
    for (const QByteArray& line : file.readAll().split('\n')) {
        if (line.startsWith(name)) {
            return line.mid(name.size()).simplified().split(' ').constFirst().toDouble();
        }
    }
    return 0;
}

double median(std::vector<double> values)
{
    std::ranges::sort(values);
    return values[values.size() / 2];
}

} // namespace lapsa::bench
