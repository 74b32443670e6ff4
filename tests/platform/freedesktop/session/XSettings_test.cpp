// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "XSettings.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace lapsa::test {

namespace {

/// An integer, a colour and a text, as a daemon on a machine of the x86 family writes them.
QByteArray sharedSettings()
{
    return QByteArray::fromHex("00000000"
                               "07000000"
                               "03000000") +
           QByteArray::fromHex("00000300") + "A/B" +
           QByteArray::fromHex("00"
                               "01000000"
                               "feffffff") +
           QByteArray::fromHex("02000400") + "C/DE" +
           QByteArray::fromHex("01000000"
                               "1111222233334444") +
           QByteArray::fromHex("01000d00") + "Net/ThemeName" +
           QByteArray::fromHex("000000"
                               "01000000"
                               "06000000") +
           "A-dark" + QByteArray::fromHex("0000");
}

} // namespace

class XSettingsTest final : public QObject
{
    Q_OBJECT

private slots:

    void integersAndTextsAreRead()
    {
        const XSettingsValues values = xSettingsOf(sharedSettings());

        QCOMPARE(values, (XSettingsValues{{"A/B", -2}, {"Net/ThemeName", u"A-dark"_s}}));
    }

    void theOtherByteOrderIsRead()
    {
        const QByteArray bytes = QByteArray::fromHex("01000000"
                                                     "00000007"
                                                     "00000001"
                                                     "00000003") +
                                 "A/B" +
                                 QByteArray::fromHex("00"
                                                     "00000001"
                                                     "00000102");

        QCOMPARE(xSettingsOf(bytes), (XSettingsValues{{"A/B", 0x102}}));
    }

    void ofADamagedPropertyTheBeginningIsRead()
    {
        const QByteArray whole = sharedSettings();
        for (qsizetype length = 0; length < whole.size(); ++length) {
            const XSettingsValues values = xSettingsOf(whole.left(length));

            QCOMPARE(values.contains("A/B"), length >= 28);
            // The last two bytes only fill up.
            QVERIFY2(!values.contains("Net/ThemeName"), qPrintable(QString::number(length)));
        }
    }

    void lengthsPastTheEndAreNotFollowed()
    {
        QByteArray bytes = sharedSettings();
        bytes.replace(QByteArray::fromHex("06000000"), QByteArray::fromHex("ffffffff"));
        QCOMPARE(xSettingsOf(bytes), (XSettingsValues{{"A/B", -2}}));

        QByteArray many = sharedSettings();
        many.replace(8, 4, QByteArray::fromHex("ffffffff"));
        QCOMPARE(xSettingsOf(many).size(), 2);
    }
};

} // namespace lapsa::test

QTEST_GUILESS_MAIN(lapsa::test::XSettingsTest)
#include "XSettings_test.moc"
