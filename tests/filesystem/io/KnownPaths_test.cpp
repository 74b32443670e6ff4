// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "KnownPaths.h"
#include "TemporaryHome.h"

#include <QTest>

#include <sys/stat.h>

#include <thread>

using namespace lapsa;
using namespace lapsa::test;
using namespace Qt::StringLiterals;

/// What is known about paths when another thread has looked at them.
class KnownPaths_test final : public QObject
{
    Q_OBJECT

private slots:
    void whatAThreadSawIsAdopted();
};

void KnownPaths_test::whatAThreadSawIsAdopted()
{
    const TemporaryHome home;
    const QString seen = home.makeFile(u"open/one/file"_s);
    const QString other = home.makeFile(u"open/two/file"_s);
    QCOMPARE(::chmod(home.path(u"open"_s).toUtf8().constData(), 0777), 0);
    fileSystem::KnownPaths known(home.path(u"known"_s));
    fileSystem::KnownPaths changed = known;
    std::thread([&] { changed.remember({seen, other}); }).join();

    known.adopt(changed, {seen});

    QVERIFY(changed.stepsTo(seen) && changed.stepsTo(other));
    QCOMPARE(known.stepsTo(seen), changed.stepsTo(seen));
    QVERIFY(!known.stepsTo(other));
    QVERIFY(known.takeChanges());
}

QTEST_GUILESS_MAIN(KnownPaths_test)
#include "KnownPaths_test.moc"
