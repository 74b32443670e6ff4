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

/// Listens for every icon that is announced to the taskbar, and clicks the last one as the taskbar does.
class Announcements final : public QObject
{
    Q_OBJECT

public:
    /// `address` is that of the session bus.
    explicit Announcements(const QString& address);

    /// Waits for the next one, at most twenty seconds.
    [[nodiscard]] bool waitForOne();

    /// Sends a left click to the program whose icon was announced last, without waiting for its answer.
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

/// A running candidate; the program ends with this object.
class Running final
{
public:
    explicit Running(const Candidate& candidate);
    Running(const Running&) = delete;
    Running& operator=(const Running&) = delete;
    ~Running();

    /// The path of one of the process's files below /proc.
    [[nodiscard]] QString proc(const QString& file) const;

    /// Its proportional set size, in megabytes.
    [[nodiscard]] double pss() const;
    /// The processor time it has used so far, in seconds.
    [[nodiscard]] double processorSeconds() const;

private:
    QProcess m_process;
};

/// The number in a line "NAME: NUMBER ..." of a file of /proc; 0 if there is none.
[[nodiscard]] double numberIn(const QString& path, QByteArrayView name);

/// The median of the values.
[[nodiscard]] double median(std::vector<double> values);

} // namespace lapsa::bench
