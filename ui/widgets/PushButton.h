// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "HoverButton.h"

namespace lapsa {

/// A button with a text, and a symbol before the text if one is set.
class PushButton final : public HoverButton
{
    Q_OBJECT

public:
    enum class Kind
    {
        /// The default button, which Return presses; in the accent colour.
        Default,
        Plain,
        /// Removes something; its text is red.
        Destructive,
    };

    PushButton(const QString& text, Kind kind, QWidget* parent = nullptr);
    void setSymbol(const QString& symbol);

    [[nodiscard]] Kind kind() const { return m_kind; }

    [[nodiscard]] QSize sizeHint() const override;

    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;
    bool event(QEvent* event) override;

private:
    [[nodiscard]] QColor foreground() const;
    void paintGround(QPainter& painter) const;

    Kind m_kind;
    QString m_symbol;
};

} // namespace lapsa
