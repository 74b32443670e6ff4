// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FreeNameMove.h"
#include "FreeNames.h"
#include "TemporaryHome.h"

#include <QDir>
#include <QFile>
#include <QTest>

#include <cerrno>

using namespace lapsa;
using namespace Qt::StringLiterals;

class FreeNames_test final : public QObject
{
    Q_OBJECT

private slots:

    void aVariantCarriesItsNumberBeforeTheExtension_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<qint64>("number");
        QTest::addColumn<QString>("variant");

        QTest::newRow("the name itself") << u"report.pdf"_s << qint64{0} << u"report.pdf"_s;
        QTest::newRow("the first variant") << u"report.pdf"_s << qint64{1} << u"report-1.pdf"_s;
        QTest::newRow("a folder") << u"Notes"_s << qint64{1} << u"Notes-1"_s;
        QTest::newRow("a leading dot") << u".profile"_s << qint64{1} << u".profile-1"_s;
        QTest::newRow("two full stops") << u"a.tar.gz"_s << qint64{12} << u"a.tar-12.gz"_s;
        QTest::newRow("a name of 255 bytes is shortened")
            << QString(251, u'x') + u".pdf"_s << qint64{1} << QString(249, u'x') + u"-1.pdf"_s;
        QTest::newRow("whole characters only") << QString(85, u'漢') << qint64{1} << QString(84, u'漢') + u"-1"_s;
        QTest::newRow("surrogate pairs stay whole")
            << u"😀"_s.repeated(63) + u"abc"_s << qint64{10} << u"😀"_s.repeated(63) + u"-10"_s;
        QTest::newRow("half a pair is a character by itself")
            << u"😀"_s.repeated(63) + QChar(0xDE00) << qint64{10} << u"😀"_s.repeated(63) + u"-10"_s;
        QTest::newRow("an extension that fills the name")
            << u"a."_s + QString(253, u'e') << qint64{1} << u"a."_s + QString(251, u'e') + u"-1"_s;
        QTest::newRow("a name that is too long by itself") << QString(300, u'x') << qint64{0} << QString(255, u'x');
    }

    void aVariantCarriesItsNumberBeforeTheExtension()
    {
        QFETCH(QString, name);
        QFETCH(qint64, number);

        const QString variant = fileNameVariant(name, number);

        QTEST(variant, "variant");
        QVERIFY(variant.toUtf8().size() <= maxFileNameBytes);
    }

    void anEndlessNameIsShortened()
    {
        // Letter by letter, with a look at the whole each time, it would not be done before the test's own end.
        const QString name = QString(qsizetype{4} * 1024 * 1024, u'x');

        QCOMPARE(fileNameVariant(name, 12), QString(252, u'x') + u"-12"_s);
    }

    void atFirstThePathIsTheAnswerItself()
    {
        const test::TemporaryHome home;
        FreeNames names;

        QCOMPARE(names.uniquePath(home.path(u"report.pdf"_s)), home.path(u"report.pdf"_s));
    }

    void afterARejectionTheFirstFreeVariantIsTheAnswer()
    {
        const test::TemporaryHome home;
        home.makeFile(u"report.pdf"_s);
        home.makeFile(u"report-1.pdf"_s);
        home.makeFile(u"report-3.pdf"_s);
        FreeNames names;

        names.reject(home.path(u"report.pdf"_s), home.path(u"report.pdf"_s));
        QCOMPARE(names.uniquePath(home.path(u"report.pdf"_s)), home.path(u"report-2.pdf"_s));
        names.markTaken(home.path(u"report-2.pdf"_s));
        QCOMPARE(names.uniquePath(home.path(u"report.pdf"_s)), home.path(u"report-4.pdf"_s));
    }

    void aMoveGoesToTheFirstFreeName()
    {
        const test::TemporaryHome home;
        home.makeFile(u"to/report.pdf"_s, "first");
        const QString from = home.makeFile(u"report.pdf"_s, "second");
        FreeNames names;

        const auto moved = movedToFreeName(from, home.path(u"to/report.pdf"_s), names);

        QVERIFY(moved);
        QCOMPARE(moved.value(), home.path(u"to/report-1.pdf"_s));
        QCOMPARE(home.names(u"to"_s), QStringList({u"report-1.pdf"_s, u"report.pdf"_s}));
    }

    void aDanglingLinkIsNeverOverwritten()
    {
        const test::TemporaryHome home;
        home.makeFolder(u"to"_s);
        QVERIFY(QFile::link(home.path(u"nowhere"_s), home.path(u"to/report.pdf"_s)));
        FreeNames names;

        const auto moved = movedToFreeName(home.makeFile(u"report.pdf"_s), home.path(u"to/report.pdf"_s), names);

        QVERIFY(moved);
        QCOMPARE(moved.value(), home.path(u"to/report-1.pdf"_s));
        QCOMPARE(QFile::symLinkTarget(home.path(u"to/report.pdf"_s)), home.path(u"nowhere"_s));
    }

    void aNameTakenAfterTheLookIsNeverOverwritten()
    {
        const test::TemporaryHome home;
        home.makeFile(u"to/report.pdf"_s, "first");
        FreeNames names;
        QVERIFY(movedToFreeName(home.makeFile(u"report.pdf"_s), home.path(u"to/report.pdf"_s), names));

        home.makeFile(u"to/report-2.pdf"_s, "somebody else's");
        const auto moved = movedToFreeName(home.makeFile(u"report.pdf"_s), home.path(u"to/report.pdf"_s), names);

        QVERIFY(moved);
        QCOMPARE(moved.value(), home.path(u"to/report-3.pdf"_s));
    }

    void aMoveIntoAFolderThatIsNotThereFails()
    {
        const test::TemporaryHome home;
        const QString from = home.makeFile(u"report.pdf"_s);
        FreeNames names;

        const auto moved = movedToFreeName(from, home.path(u"missing/report.pdf"_s), names);

        QVERIFY(!moved);
        QCOMPARE(moved.error().code, ENOENT);
        QVERIFY(QFile::exists(from));
    }

private:
    static Result<QString> movedToFreeName(const QString& from, const QString& wanted, FreeNames& names)
    {
        fileSystem::Batch batch({});
        const Result<NewPlace> moved = moveToFreeName(batch, batch.find(from), wanted, names);
        return moved ? Result<QString>(moved.value().path) : moved.error();
    }
};

QTEST_GUILESS_MAIN(FreeNames_test)

#include "FreeNames_test.moc"
