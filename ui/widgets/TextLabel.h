// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "TextStyle.h"
#include "ThemePalette.h"

#include <QLabel>

namespace lapsa {

/// Plain text in a text style and a colour role, wrapped to as many lines as it needs.
class TextLabel final : public QLabel
{
    Q_OBJECT

public:
    TextLabel(const QString& text, const TextStyle& style, ColorRole role = ColorRole::Primary,
              QWidget* parent = nullptr);

    void setStyle(const TextStyle& style);
    void setRole(ColorRole role);
    /// Further lines are cut off; the last visible one then ends with an ellipsis.
    void setMaximumLines(int lines);
    /// Digits of equal width, for changing numbers: on one line, never narrower than the text or than `leastWidth`.
    void setTabular(int leastWidth = 0);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;
    [[nodiscard]] int heightForWidth(int width) const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    bool event(QEvent* event) override;

private:
    [[nodiscard]] int lineHeight() const;
    [[nodiscard]] QRect boundsFor(int width) const;
    /// The narrowest width that needs no more lines than `width`, so that centred lines have about the same length.
    [[nodiscard]] int balancedWidth(int width) const;
    [[nodiscard]] QString shortened(const QString& text) const;

    TextStyle m_style;
    int m_maximumLines = 0;
    int m_leastWidth = 0;
    bool m_tabular = false;
};

} // namespace lapsa
