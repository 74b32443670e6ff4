// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "Options.h"

#include "Injection.h"

#include <QCommandLineParser>

namespace lapsa::test {

using namespace Qt::StringLiterals;

std::optional<Options> Options::of(int count, char* arguments[])
{
    QStringList words;
    for (int i = 0; i < count; ++i) {
        words += QString::fromLocal8Bit(arguments[i]);
    }
    QCommandLineParser parser;
    parser.addOptions({{u"short"_s, u"a selection"_s},
                       {u"threads"_s, u"with threads"_s},
                       {u"list"_s, u"the names of all scenarios"_s},
                       {u"calls"_s, u"each call of a run"_s},
                       {u"every"_s, u"each n-th fault"_s, u"n"_s},
                       {u"cuts"_s, u"each n-th power cut"_s, u"n"_s},
                       {u"thin"_s, u"so many times fewer"_s, u"n"_s, u"1"_s},
                       {u"jobs"_s, u"so many at a time"_s, u"n"_s, u"2"_s},
                       {u"scenario"_s, u"only this one"_s, u"name"_s},
                       {u"only"_s, u"only this injection"_s, u"injection"_s},
                       {u"in"_s, u"where files are made"_s, u"folder"_s, QDir::tempPath()}});
    if (!parser.parse(words) || !parser.positionalArguments().isEmpty()) {
        return std::nullopt;
    }
    const Options options{.briefly = parser.isSet(u"short"_s),
                          .thin = parser.value(u"thin"_s).toInt(),
                          .every = parser.value(u"every"_s).toInt(),
                          .cuts = parser.value(u"cuts"_s).toInt(),
                          .jobs = parser.value(u"jobs"_s).toInt(),
                          .threads = parser.isSet(u"threads"_s),
                          .scenario = parser.value(u"scenario"_s).toUtf8(),
                          .only = parser.value(u"only"_s).toUtf8(),
                          .calls = parser.isSet(u"calls"_s),
                          .list = parser.isSet(u"list"_s),
                          .folder = parser.value(u"in"_s)};
    const bool onlyIsKnown = options.only.isEmpty() || options.only == "nothing" || Injection::ofText(options.only);
    return options.jobs > 0 && options.thin > 0 && options.every >= 0 && options.cuts >= 0 && onlyIsKnown
               ? std::optional(options)
               : std::nullopt;
}

} // namespace lapsa::test
