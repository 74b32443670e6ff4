// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QScrollBar>
#include <QWidget>

namespace lapsa {

class ScrollFade;

/// A list's viewport: its scroll bar lies beside it in the parent's margin, and its rows fade at the edges behind which
/// there are more. A subclass sets the bar's range and places its rows.
class ScrolledList : public QWidget
{
    Q_OBJECT

public:
    [[nodiscard]] QScrollBar& scrollBar() { return *m_bar; }

protected:
    explicit ScrolledList(QWidget* parent);

    void resizeEvent(QResizeEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    bool event(QEvent* event) override;

    /// Shows the fades where there is more, above all rows. Call it after scrolling.
    void updateFades();

    QScrollBar* const m_bar;

private:
    void placeBar();

    ScrollFade* m_topFade;
    ScrollFade* m_bottomFade;
};

} // namespace lapsa
