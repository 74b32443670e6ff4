// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "CommandLine.h"
#include "LapsaClient.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <QVariantMap>

namespace lapsa {

/// The exit status of `lapsactl`.
enum class Status
{
    Done = 0,
    /// At least one file or name failed; one line on standard error for each.
    NotAllDone = 1,
    WrongUsage = 2,
    /// Lapsa cannot be reached.
    NotRunning = 3,
};

/// Does what a command line asks of Lapsa. Prints the result on standard output and failures on standard error.
class Commands final
{
public:
    explicit Commands(const CommandLine& line);

    [[nodiscard]] Status run();

private:
    using Dictionaries = LapsaClient::Dictionaries;

    void add();
    void list();
    void change();
    void putBack();
    [[nodiscard]] Dictionaries named(const Dictionaries& known, const QString& pathKey);
    void print(const Dictionaries& dictionaries, const QByteArray& text);
    void complain(const QString& about, const QString& reason);
    void failed();

    const CommandLine& m_line;
    LapsaClient m_client;
    Status m_status = Status::Done;
};

/// Writes one line, "lapsactl: …", to standard error.
void complain(const QString& text);

/// Writes to standard output. Whether that worked.
[[nodiscard]] bool writeOut(const QByteArray& text);

} // namespace lapsa
