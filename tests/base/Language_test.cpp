// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "Language.h"

#include <QTest>

using namespace lapsa;
using namespace Qt::StringLiterals;

class Language_test final : public QObject
{
    Q_OBJECT

private slots:
    void theFirstSetVariableDecides_data();
    void theFirstSetVariableDecides();
};

void Language_test::theFirstSetVariableDecides_data()
{
    QTest::addColumn<QByteArray>("all");
    QTest::addColumn<QByteArray>("messages");
    QTest::addColumn<QByteArray>("lang");
    QTest::addColumn<QString>("code");
    const auto row = [](const char* name, const char* all, const char* messages, const char* lang, const char* code) {
        QTest::newRow(name) << QByteArray(all) << QByteArray(messages) << QByteArray(lang) << QString::fromLatin1(code);
    };
    row("LC_ALL before all", "it_IT.UTF-8", "de_DE", "en_US", "it");
    row("LC_MESSAGES before LANG", nullptr, "it_CH", "en_US", "it");
    row("an empty one is passed over", "", "", "it", "it");
    row("LANG alone", nullptr, nullptr, "it_IT@euro", "it");
    row("a language with a codeset only", nullptr, nullptr, "it.UTF-8", "it");
    row("a hyphen", nullptr, nullptr, "it-IT", "it");
    row("capital letters", nullptr, nullptr, "IT_it", "");
    row("three letters", nullptr, nullptr, "fil_PH", "fil");
    row("a language that starts alike", nullptr, nullptr, "iu_CA", "iu");
    row("the C locale", "C", "it_IT", "it_IT", "");
    row("the C locale with a codeset", "C.UTF-8", nullptr, nullptr, "");
    row("POSIX", nullptr, nullptr, "POSIX", "");
    row("nothing", nullptr, nullptr, nullptr, "");
    row("a path", nullptr, nullptr, "/usr/share/locale/it", "");
}

void Language_test::theFirstSetVariableDecides()
{
    QFETCH(QByteArray, all);
    QFETCH(QByteArray, messages);
    QFETCH(QByteArray, lang);
    const auto set = [](const char* name, const QByteArray& value) {
        value.isNull() ? qunsetenv(name) : qputenv(name, value);
    };
    set("LC_ALL", all);
    set("LC_MESSAGES", messages);
    set("LANG", lang);
    qputenv("LANGUAGE", "fr"); // a list of preferences, not the locale

    QTEST(currentLanguageCode(), "code");
}

QTEST_GUILESS_MAIN(Language_test)
#include "Language_test.moc"
