// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QProcess>
#include <QString>
#include <QStringList>

#include <vector>

namespace lapsa::bench {

/// A program that shows an icon in the tray.
struct Candidate
{
    QString name;
    QString program;
    QStringList arguments;
};

/// Hears of every icon that is announced to the taskbar, and clicks on the last one as the taskbar does.
class Announcements final : public QObject
{
    Q_OBJECT

public:
    /// The address is that of the session bus.
    explicit Announcements(const QString& address);

    /// Waits for the next one, for at most twenty seconds.
    [[nodiscard]] bool waitForOne();

    /// Passes a left click on to the program whose icon was announced last, without waiting for its answer.
    void activateLast();

signals:
    void announced();

private slots:
    void note(const QString& item);

private:
    QDBusConnection m_bus;
    bool m_announced = false;
    QString m_service;
    QString m_path;
};

/// Such a program while it runs; it ends with this object.
class Running final
{
public:
    explicit Running(const Candidate& candidate);
    Running(const Running&) = delete;
    Running& operator=(const Running&) = delete;
    ~Running();

    /// A file of the process below /proc.
    [[nodiscard]] QString proc(const QString& file) const;

    /// Megabytes of its share of memory.
    [[nodiscard]] double pss() const;
    /// Seconds of the processor that it has used so far.
    [[nodiscard]] double processorSeconds() const;

private:
    QProcess m_process;
};

/// The number in a line "NAME: NUMBER ..." of a file of /proc; 0 where there is none.
[[nodiscard]] double numberIn(const QString& path, QByteArrayView name);

/// The one in the middle.
[[nodiscard]] double median(std::vector<double> values);

} // namespace lapsa::bench
