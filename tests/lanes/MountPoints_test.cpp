// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "MountPoints.h"
#include "Privileges.h"
#include "TemporaryHome.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace lapsa::test {

class MountPointsTest final : public QObject
{
    Q_OBJECT

private slots:

    void aPathIsHeldByTheLongestMountPointAboveIt()
    {
        if (!PrivateMounts::available()) {
            QSKIP("only root may mount");
        }
        TemporaryHome home;
        PrivateMounts mounts;
        MountPoints points;
        const QString outer = home.path(u"outer disk"_s);
        const QString inner = outer + u"/inner"_s;
        const QString before = points.holding(outer + u"/file"_s);
        QVERIFY(before != outer);

        mounts.mountTemporary(outer);
        QCOMPARE(points.holding(outer + u"/inner/file"_s), outer);

        mounts.mountTemporary(inner);
        QCOMPARE(points.holding(inner), inner);
        QCOMPARE(points.holding(inner + u"/file"_s), inner);
        QCOMPARE(points.holding(inner + u"-not/file"_s), outer);
        QCOMPARE(points.holding(outer), outer);

        mounts.unmount(inner);
        mounts.unmount(outer);
        QCOMPARE(points.holding(inner + u"/file"_s), before);
    }

    void whatIsNowhereIsHeldByTheRoot()
    {
        MountPoints points;

        QCOMPARE(points.holding(u"/no such folder/file"_s), u"/"_s);
        QCOMPARE(points.holding(u"/"_s), u"/"_s);
        QCOMPARE(points.holding(QString()), u"/"_s);
    }

    void theKernelsOwnMountsAreFound()
    {
        MountPoints points;

        QCOMPARE(points.holding(u"/proc/self/stat"_s), u"/proc"_s);
    }
};

} // namespace lapsa::test

QTEST_GUILESS_MAIN(lapsa::test::MountPointsTest)
#include "MountPoints_test.moc"
