// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FinishedProgram.h"
#include "ServedLapsa.h"

#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace lapsa::test {

/// The completions in the shells themselves.
class LapsactlCompletionTest final : public ServedLapsa
{
    Q_OBJECT

private slots:

    void init()
    {
        beginServed();
        m_home->makeFile(u"a b.txt"_s);
        const QString expired = m_home->makeFile(u"old & grey.zip"_s);
        listExpired(expired);
        startLapsa();
        QTRY_COMPARE_WITH_TIMEOUT(answer(u"Recovered"_s).size(), 1, patience);
        const FinishedProgram added =
            finished(QStringLiteral(LAPSACTL_PROGRAM), {u"add"_s, u"a b.txt"_s}, m_home->path({}));
        QCOMPARE(added.code, 0);
    }

    void cleanup() { endServed(); }

    void bashOffers_data()
    {
        QTest::addColumn<QStringList>("words");
        QTest::addColumn<QStringList>("offered");

        QTest::newRow("commands") << QStringList{u"lapsactl"_s, u"re"_s} << QStringList({u"remove"_s, u"recovered"_s});
        QTest::newRow("commands after an option")
            << QStringList{u"lapsactl"_s, u"--json"_s, u"li"_s} << QStringList{u"list"_s};
        QTest::newRow("options of add") << QStringList{u"lapsactl"_s, u"add"_s, u"--f"_s} << QStringList{u"--for"_s};
        QTest::newRow("no lifespan for list") << QStringList{u"lapsactl"_s, u"list"_s, u"--f"_s} << QStringList();
        QTest::newRow("lifespans") << QStringList{u"lapsactl"_s, u"add"_s, u"--for"_s, u"1"_s}
                                   << QStringList({u"10min"_s, u"1h"_s, u"12h"_s, u"1d"_s});
        QTest::newRow("names on the list")
            << QStringList{u"lapsactl"_s, u"lock"_s, u"a"_s} << QStringList{u"a b.txt"_s};
        QTest::newRow("names in Recovery")
            << QStringList{u"lapsactl"_s, u"put-back"_s, u"o"_s} << QStringList{u"old & grey.zip"_s};
        QTest::newRow("nothing after list") << QStringList{u"lapsactl"_s, u"list"_s, QString()} << QStringList();
    }

    void bashOffers()
    {
        QFETCH(const QStringList, words);
        QFETCH(const QStringList, offered);
        const QString script = u"source \"$1\"; PATH=$2:$PATH; shift 2; COMP_WORDS=(\"$@\"); COMP_CWORD=$(($# - 1)); "
                               "_lapsactl; printf '%s\\n' \"${COMPREPLY[@]}\""_s;

        const FinishedProgram asked =
            finished(u"bash"_s, QStringList{u"-c"_s, script, u"bash"_s, completionOfBash(), folderOfProgram()} + words);

        QCOMPARE(asked.errors, QByteArray());
        QCOMPARE(QString::fromUtf8(asked.output).split(u'\n', Qt::SkipEmptyParts), offered);
    }

    void inAnInteractiveBashTabCompletesAndQuotesAName()
    {
        const FinishedProgram typed =
            finished(u"python3"_s, {QStringLiteral(SCRIPTS_FOLDER "/typed_into_bash.py"), completionOfBash(),
                                    folderOfProgram(), u"lapsactl put-back old"_s});

        QVERIFY2(typed.code == 0, typed.errors.constData());
        QTRY_COMPARE_WITH_TIMEOUT(answer(u"Recovered"_s), Dictionaries(), patience);
        QVERIFY(QFileInfo::exists(m_home->path(u"old & grey.zip"_s)));
    }

    void inAnInteractiveZshTabCompletes_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("completed");

        QTest::newRow("a command") << u"lapsactl put"_s << u"lapsactl put-back "_s;
        QTest::newRow("an option") << u"lapsactl add --f"_s << u"lapsactl add --for "_s;
        QTest::newRow("a name on the list") << u"lapsactl lock a"_s << u"lapsactl lock a\\ b.txt "_s;
        QTest::newRow("a name in Recovery")
            << u"lapsactl put-back old"_s << u"lapsactl put-back old\\ \\&\\ grey.zip "_s;
    }

    void inAnInteractiveZshTabCompletes()
    {
        QFETCH(const QString, typed);
        QFETCH(const QString, completed);

        const FinishedProgram asked =
            finished(u"zsh"_s, {u"-f"_s, QStringLiteral(SCRIPTS_FOLDER "/typed_into_zsh.zsh"),
                                QStringLiteral(COMPLETIONS_FOLDER), folderOfProgram(), typed});

        QVERIFY2(asked.code == 0, asked.errors.constData());
        QCOMPARE(QString::fromUtf8(asked.output), completed + u'\n');
    }

private:
    [[nodiscard]] static QString completionOfBash() { return QStringLiteral(COMPLETIONS_FOLDER "/lapsactl.bash"); }

    [[nodiscard]] static QString folderOfProgram()
    {
        return QFileInfo(QStringLiteral(LAPSACTL_PROGRAM)).absolutePath();
    }
};

} // namespace lapsa::test

QTEST_GUILESS_MAIN(lapsa::test::LapsactlCompletionTest)
#include "Lapsactl_completion_test.moc"
