// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "LifespanRules.h"

#include <QTest>

using namespace lapsa;
using namespace Qt::StringLiterals;

namespace {

LapsaSettings withRules(const QList<LapsaFileTypeRule>& rules, std::int64_t defaultMinutes = 120)
{
    LapsaSettings settings;
    settings.defaultExpirationMinutes = defaultMinutes;
    settings.fileTypeRules = rules;
    return settings;
}

} // namespace

class LifespanRules_test final : public QObject
{
    Q_OBJECT

private slots:

    void aRuleListsExtensionsInManyWays_data()
    {
        QTest::addColumn<QString>("extensionsCSV");
        QTest::addColumn<bool>("matches");

        QTest::newRow("without its full stop") << u"jpg"_s << true;
        QTest::newRow("with its full stop") << u".jpg"_s << true;
        QTest::newRow("after a comma and a blank, in upper case") << u"png, JPG"_s << true;
        QTest::newRow("after a semicolon") << u"gif;jpg"_s << true;
        QTest::newRow("with blanks around it") << u"  .Jpg  "_s << true;
        QTest::newRow("after a run of separators") << u",,; ;jpg"_s << true;
        QTest::newRow("with a tab and a line break around it") << u"png,\t.jpg\n"_s << true;
        QTest::newRow("with a blank inside") << u"jp g"_s << false;
        QTest::newRow("as the beginning of another") << u"jpgx"_s << false;
        QTest::newRow("with two full stops") << u"..jpg"_s << false;
        QTest::newRow("nothing at all") << QString() << false;
        QTest::newRow("separators alone") << u" ,;, ."_s << false;
    }

    void aRuleListsExtensionsInManyWays()
    {
        QFETCH(QString, extensionsCSV);
        QFETCH(bool, matches);
        const LifespanRules rules(withRules({{.extensionsCSV = extensionsCSV, .lifespanMinutes = 7}}));

        QCOMPARE(rules.lifespanFor(u"a.JPG"_s), matches ? 7 : 120);
    }

    void theSplitPiecesAreNormalised()
    {
        QCOMPARE(extensionsOf(u"jp g"_s), QStringList({u".jp"_s, u".g"_s}));
        QCOMPARE(extensionsOf(u".ZIP;;rar, "_s), QStringList({u".zip"_s, u".rar"_s}));
        QCOMPARE(extensionsOf(u". , ;"_s), QStringList());
    }

    void theFirstRuleThatListsAnExtensionDecides()
    {
        const LifespanRules rules(withRules(
            {{.extensionsCSV = u".pdf"_s, .lifespanMinutes = 7}, {.extensionsCSV = u".pdf"_s, .lifespanMinutes = 9}}));

        QCOMPARE(rules.lifespanFor(u"report.pdf"_s), 7);
    }

    void aDisabledRuleIsPassedOver()
    {
        const LifespanRules rules(withRules({{.extensionsCSV = u".pdf"_s, .lifespanMinutes = 7, .enabled = false},
                                             {.extensionsCSV = u".pdf"_s, .lifespanMinutes = 9}}));

        QCOMPARE(rules.lifespanFor(u"report.pdf"_s), 9);
    }

    void aLifespanIsHeldBetweenOneMinuteAnd365Days_data()
    {
        QTest::addColumn<qint64>("given");
        QTest::addColumn<qint64>("expected");

        QTest::newRow("0 minutes give 1") << qint64{0} << qint64{1};
        QTest::newRow("-3 minutes give 1") << qint64{-3} << qint64{1};
        QTest::newRow("600000 minutes give 525600") << qint64{600000} << qint64{525600};
        QTest::newRow("525600 minutes stay") << qint64{525600} << qint64{525600};
    }

    void aLifespanIsHeldBetweenOneMinuteAnd365Days()
    {
        QFETCH(qint64, given);

        const LifespanRules byRule(withRules({{.extensionsCSV = u".pdf"_s, .lifespanMinutes = given}}));
        QTEST(qint64{byRule.lifespanFor(u"report.pdf"_s)}, "expected");
        const LifespanRules byDefault(withRules({}, given));
        QTEST(qint64{byDefault.lifespanFor(u"report.pdf"_s)}, "expected");
    }

    void aFileWithoutAnExtensionMatchesNoRule_data()
    {
        QTest::addColumn<QString>("name");

        QTest::newRow("no full stop") << u"Makefile"_s;
        QTest::newRow("a leading full stop") << u".zip"_s;
        QTest::newRow("a full stop at the end") << u"zip."_s;
    }

    void aFileWithoutAnExtensionMatchesNoRule()
    {
        QFETCH(QString, name);
        const LifespanRules rules(withRules({{.extensionsCSV = u", ,zip,Makefile,."_s, .lifespanMinutes = 7}}));

        QCOMPARE(rules.lifespanFor(name), 120);
    }
};

QTEST_GUILESS_MAIN(LifespanRules_test)

#include "LifespanRules_test.moc"
