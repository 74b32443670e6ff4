// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "CommandLine.h"
#include "Commands.h"
#include "Localized.h"

#include <QCoreApplication>

namespace lapsa {

namespace {

using namespace Qt::StringLiterals;

Status run(const CommandLine& line)
{
    if (!line.error.isEmpty()) {
        complain(line.error);
        complain(Localized::text(u"“lapsactl --help” shows the usage"_s, u"“lapsactl --help” mostra l'uso"_s));
        return Status::WrongUsage;
    }
    if (line.verb == CommandLine::Verb::Help) {
        return writeOut(helpText().toUtf8()) ? Status::Done : Status::NotAllDone;
    }
    if (line.verb == CommandLine::Verb::Version) {
        return writeOut("lapsactl " LAPSA_VERSION "\n") ? Status::Done : Status::NotAllDone;
    }
    return Commands(line).run();
}

} // namespace

} // namespace lapsa

int main(int argc, char** argv)
{
    QList<QByteArray> arguments;
    for (int i = 1; i < argc; ++i) {
        arguments.push_back(argv[i]);
    }
    const QCoreApplication application(argc, argv);
    return int(lapsa::run(lapsa::readCommandLine(arguments)));
}
