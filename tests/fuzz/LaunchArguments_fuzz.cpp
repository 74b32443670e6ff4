// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FileSystem.h"
#include "FileUri.h"
#include "FuzzTarget.h"
#include "LaunchArguments.h"

namespace lapsa::fuzz {

namespace {

void checkFile(const QUrl& file)
{
    demand(file.isValid() && file.isLocalFile(), "an argument is a file of this machine");
    demand(file.host().isEmpty(), "no part of a path is taken for a machine");
    demand(fileSystem::standardizedPath(file).has_value(), "the store can take what an argument names");
    const QString path = file.toLocalFile();
    demand(path.startsWith(u'/'), "an argument is an absolute path");
    demand(filesOfArguments({fileUri(path)}, {}) == QList{file}, "a file survives the way through a URI");
}

} // namespace

/// Arguments as the system hands them over: bytes that end at a zero. Relative ones are taken from the first.
void run(QByteArrayView input)
{
    const QList<QByteArray> arguments = input.toByteArray().split('\0');
    QList<QUrl> oneByOne;
    for (const QByteArray& folder :
         {QByteArray(), QByteArray("/cwd"), withOneLeadingSlash('/' + arguments.constFirst())}) {
        const QList<QUrl> files = filesOfArguments(arguments, folder);
        demand(files.size() <= arguments.size(), "an argument names one file at most");
        oneByOne.clear();
        for (const QByteArray& argument : arguments) {
            oneByOne += filesOfArguments({argument}, folder);
        }
        demand(files == oneByOne, "no argument changes what another one means");
        for (const QUrl& file : files) {
            checkFile(file);
        }
    }
}

} // namespace lapsa::fuzz
