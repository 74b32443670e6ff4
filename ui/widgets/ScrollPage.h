// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QScrollArea>

class QScrollBar;
class QVBoxLayout;

namespace lapsa {

class ScrollFade;

/// A scrolling column of sections. The scroll bar lies in the margin, so that nothing moves when it appears; content
/// fades out at an edge beyond which there is more.
class ScrollPage : public QScrollArea
{
    Q_OBJECT

public:
    /// `name` is the accessible name of the page.
    explicit ScrollPage(const QString& name, QWidget* parent = nullptr);

    /// The layout for the sections, from top to bottom.
    [[nodiscard]] QVBoxLayout& sections() { return *m_sections; }

    /// Sets how far the first section extends above the common line of first headings. At most topMargin.
    void setOverhang(int overhang);

    /// Left, right and bottom.
    static constexpr int margin = 24;
    static constexpr int topMargin = 12;

protected:
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void followRange();
    void placeBar();
    void updateFades();

    QVBoxLayout* m_sections;
    QScrollBar* m_bar;
    ScrollFade* m_topFade;
    ScrollFade* m_bottomFade;
};

} // namespace lapsa
