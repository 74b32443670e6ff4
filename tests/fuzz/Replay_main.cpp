// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FuzzTarget.h"
#include "Mutations.h"

#include <QDir>
#include <QFile>
#include <QList>

#include <cstdio>
#include <cstdlib>

using namespace Qt::StringLiterals;

namespace {

constexpr int mutationsOfAll = 4000;
constexpr int longInputs = 20;

/// What is being run, so that it can be told when the process ends over it.
QByteArray currentInput; // NOLINT(cppcoreguidelines-avoid-non-const-global-variables)

void tellInput(QtMsgType type, const QMessageLogContext& /*context*/, const QString& message)
{
    std::fprintf(stderr, "%s\n", qPrintable(message));
    if (type == QtFatalMsg) {
        constexpr qsizetype enough = 4096;
        std::fprintf(stderr, "over an input of %lld bytes, in hexadecimal: %s\n",
                     static_cast<long long>(currentInput.size()),
                     currentInput.first(qMin(currentInput.size(), enough)).toHex().constData());
    }
}

void run(const QByteArray& input)
{
    currentInput = input;
    lapsa::fuzz::run(input);
}

QList<QByteArray> seedsIn(const QString& folder)
{
    QList<QByteArray> seeds;
    for (const QString& name : QDir(folder).entryList(QDir::Files, QDir::Name)) {
        QFile file(folder + u'/' + name);
        if (!file.open(QIODevice::ReadOnly)) {
            qFatal("cannot read %s", qPrintable(file.fileName()));
        }
        seeds.push_back(file.readAll());
    }
    return seeds;
}

} // namespace

/// The argument is a folder of seeds, or one input to run by itself.
int main(int argc, char** argv)
{
    qInstallMessageHandler(tellInput);
    const QString given = QFile::decodeName(argc == 2 ? argv[1] : "");
    if (QFile file(given); QFileInfo(given).isFile() && file.open(QIODevice::ReadOnly)) {
        run(file.readAll());
        return EXIT_SUCCESS;
    }
    const QList<QByteArray> seeds = seedsIn(given);
    if (given.isEmpty() || seeds.isEmpty()) {
        qFatal("wants a folder of seeds, or one input");
    }
    run({});
    for (const QByteArray& seed : seeds) {
        run(seed);
    }
    // The same inputs in every run, on every machine.
    lapsa::fuzz::Mutations mutations(seeds);
    for (int count = 0; count < mutationsOfAll; ++count) {
        run(mutations.next());
    }
    for (int count = 0; count < longInputs; ++count) {
        run(mutations.nextLong());
    }
    std::printf("%lld seeds, %d mutations\n", static_cast<long long>(seeds.size()), mutationsOfAll + longInputs);
    return EXIT_SUCCESS;
}
