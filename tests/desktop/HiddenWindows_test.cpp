// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "HiddenWindows.h"

#include <QBackingStore>
#include <QPaintEvent>
#include <QPainter>
#include <QTest>
#include <QWidget>

#include <optional>

namespace lapsa::test {

namespace {

class PaintedWindow final : public QWidget
{
public:
    QRegion painted;

private:
    void paintEvent(QPaintEvent* event) override
    {
        painted += event->region();
        QPainter(this).fillRect(rect(), Qt::red);
    }
};

} // namespace

class HiddenWindowsTest final : public QObject
{
    Q_OBJECT

private slots:

    void init()
    {
        m_window.emplace();
        m_window->resize(300, 200);
        m_window->show();
        QVERIFY(QTest::qWaitForWindowExposed(&*m_window));
        QTRY_COMPARE(m_window->painted, QRegion(m_window->rect()));
    }

    void aHiddenWindowKeepsNoPicture()
    {
        m_window->hide();

        forgetPicturesOfHiddenWindows();

        QCOMPARE(m_window->backingStore()->size(), QSize(1, 1));
    }

    void aWindowOnTheScreenKeepsIts()
    {
        forgetPicturesOfHiddenWindows();

        QCOMPARE(m_window->backingStore()->size(), m_window->size());
    }

    void aWindowThatShowsAgainPaintsItselfWhole()
    {
        m_window->hide();
        forgetPicturesOfHiddenWindows();
        m_window->painted = {};

        m_window->show();
        QVERIFY(QTest::qWaitForWindowExposed(&*m_window));

        QTRY_COMPARE(m_window->painted, QRegion(m_window->rect()));
        QCOMPARE(m_window->backingStore()->size(), m_window->size());
    }

private:
    std::optional<PaintedWindow> m_window;
};

} // namespace lapsa::test

QTEST_MAIN(lapsa::test::HiddenWindowsTest)

#include "HiddenWindows_test.moc"
