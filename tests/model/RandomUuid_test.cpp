// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "RandomUuid.h"

#include <QSet>
#include <QTest>

using namespace Qt::StringLiterals;

namespace lapsa::test {

class RandomUuidTest final : public QObject
{
    Q_OBJECT

private slots:

    void itIsOfVersion4()
    {
        const QUuid uuid = randomUuid();

        QCOMPARE(uuid.version(), QUuid::Random);
        QCOMPARE(uuid.variant(), QUuid::DCE);
    }

    void noneComesTwiceAndEveryRandomBitVaries()
    {
        constexpr int count = 10'000;
        QSet<QUuid> found;
        QByteArray ones(16, '\0');
        QByteArray zeros(16, '\xFF');
        for (int i = 0; i < count; ++i) {
            const QUuid uuid = randomUuid();
            found.insert(uuid);
            const QByteArray bytes = uuid.toRfc4122();
            for (qsizetype byte = 0; byte < bytes.size(); ++byte) {
                ones[byte] = char(ones[byte] | bytes[byte]);
                zeros[byte] = char(zeros[byte] & bytes[byte]);
            }
        }

        QCOMPARE(found.size(), count);
        // All but the version and the variant.
        QCOMPARE(ones.toHex(), QByteArray("ffffffffffff4fffbfffffffffffffff"));
        QCOMPARE(zeros.toHex(), QByteArray("00000000000040008000000000000000"));
    }

    void theTextIsTheCanonicalOneInUpperCase()
    {
        const QUuid uuid(u"01234567-89ab-cdef-fedc-ba9876543210"_s);

        QCOMPARE(upperCaseText(uuid), u"01234567-89AB-CDEF-FEDC-BA9876543210"_s);
        const QUuid random = randomUuid();
        QCOMPARE(upperCaseText(random), random.toString(QUuid::WithoutBraces).toUpper());
    }
};

} // namespace lapsa::test

QTEST_GUILESS_MAIN(lapsa::test::RandomUuidTest)

#include "RandomUuid_test.moc"
