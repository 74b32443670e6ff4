// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FileName.h"

#include <QTest>

using namespace lapsa;
using namespace Qt::StringLiterals;

class FileName_test final : public QObject
{
    Q_OBJECT

private slots:

    void aNameIsTakenApartAtItsLastFullStop_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("base");
        QTest::addColumn<QString>("extension");

        QTest::newRow("one full stop") << u"report.pdf"_s << u"report"_s << u"pdf"_s;
        QTest::newRow("two full stops") << u"backup.tar.gz"_s << u"backup.tar"_s << u"gz"_s;
        QTest::newRow("no full stop") << u"Notes"_s << u"Notes"_s << QString();
        QTest::newRow("a leading dot is no extension") << u".profile"_s << u".profile"_s << QString();
        QTest::newRow("a leading dot and an extension") << u".cache.db"_s << u".cache"_s << u"db"_s;
        QTest::newRow("a full stop at the end") << u"Notes."_s << u"Notes."_s << QString();
        QTest::newRow("an empty name") << QString() << QString() << QString();
    }

    void aNameIsTakenApartAtItsLastFullStop()
    {
        QFETCH(QString, name);

        const FileName parts = FileName::of(name);

        QTEST(parts.base, "base");
        QTEST(parts.extension, "extension");
    }

    void aPathHasALastComponentAndAFolder_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("component");
        QTest::addColumn<QString>("folder");

        QTest::newRow("a deep path") << u"/home/ada/report.pdf"_s << u"report.pdf"_s << u"/home/ada"_s;
        QTest::newRow("directly in the root") << u"/report.pdf"_s << u"report.pdf"_s << u"/"_s;
    }

    void aPathHasALastComponentAndAFolder()
    {
        QFETCH(QString, path);

        QTEST(lastPathComponent(path), "component");
        QTEST(parentPath(path), "folder");
    }
};

QTEST_GUILESS_MAIN(FileName_test)

#include "FileName_test.moc"
