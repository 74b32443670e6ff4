// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "TextStyle.h"
#include "ThemePalette.h"

#include <QLabel>

namespace lapsa {

/// One line of plain text, elided in the middle if it is too long; the tooltip then has the full text. Safe for any
/// file name.
class ElidedLabel final : public QLabel
{
    Q_OBJECT

public:
    explicit ElidedLabel(const TextStyle& style, ColorRole role = ColorRole::Primary, QWidget* parent = nullptr);

    void setText(const QString& text);
    void setRole(ColorRole role);

    [[nodiscard]] ColorRole role() const { return m_role; }

    void setElideMode(Qt::TextElideMode mode);
    /// Digits of equal width, for numbers that change.
    void setTabular(bool tabular);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    bool event(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    [[nodiscard]] double textWidth(const QString& text) const;
    void updateToolTip();

    TextStyle m_style;
    ColorRole m_role;
    Qt::TextElideMode m_elideMode = Qt::ElideMiddle;
    bool m_tabular = false;
};

} // namespace lapsa
