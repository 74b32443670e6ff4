// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "PanelWorld.h"
#include "TextLabel.h"

#include <QImage>
#include <QTest>

using namespace Qt::StringLiterals;

namespace lapsa::test {

namespace {

constexpr QMargins margins{9, 5, 7, 3};

QImage drawn(QWidget& widget)
{
    QImage image(widget.size(), QImage::Format_ARGB32);
    image.fill(Qt::white);
    widget.render(&image);
    return image;
}

} // namespace

class TextLabelTest final : public QObject
{
    Q_OBJECT

private slots:

    void initTestCase() { PanelWorld::setUpApplication(); }

    void theTextIsDrawnInsideTheMargins_data()
    {
        QTest::addColumn<bool>("tabular");
        QTest::addColumn<int>("lines");
        QTest::addColumn<Qt::Alignment>("alignment");
        QTest::newRow("leading") << false << 0 << Qt::Alignment(Qt::AlignLeading | Qt::AlignTop);
        QTest::newRow("centred") << false << 0 << Qt::Alignment(Qt::AlignHCenter | Qt::AlignTop);
        QTest::newRow("one line that is shortened") << false << 1 << Qt::Alignment(Qt::AlignLeading | Qt::AlignTop);
        QTest::newRow("digits of equal width") << true << 0 << Qt::Alignment(Qt::AlignLeading | Qt::AlignTop);
    }

    void theTextIsDrawnInsideTheMargins()
    {
        QFETCH(const bool, tabular);
        QFETCH(const int, lines);
        QFETCH(const Qt::Alignment, alignment);
        TextLabel plain(u"12 files and one more"_s, bodyText);
        TextLabel set(plain.text(), bodyText);
        set.setContentsMargins(margins);
        for (TextLabel* const label : {&plain, &set}) {
            label->setAlignment(alignment);
            label->setMaximumLines(lines);
            if (tabular) {
                label->setTabular();
            }
        }
        const int width = tabular ? plain.sizeHint().width() : plain.sizeHint().width() * 2 / 3;

        plain.resize(width, plain.heightForWidth(width));
        const int setWidth = width + margins.left() + margins.right();
        set.resize(setWidth, set.heightForWidth(setWidth));

        QCOMPARE(set.height(), plain.height() + margins.top() + margins.bottom());
        QCOMPARE(drawn(set).copy(QRect(QPoint(margins.left(), margins.top()), plain.size())), drawn(plain));
        QCOMPARE(set.sizeHint(), plain.sizeHint().grownBy(margins));
    }
};

} // namespace lapsa::test

QTEST_MAIN(lapsa::test::TextLabelTest)
#include "TextLabel_test.moc"
