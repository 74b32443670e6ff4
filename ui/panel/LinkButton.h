// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "HoverButton.h"
#include "TextStyle.h"

namespace lapsa {

/// A button that looks like a link in a text: accent colour, underlined under the pointer.
class LinkButton final : public HoverButton
{
    Q_OBJECT

public:
    LinkButton(const QString& text, const TextStyle& style, QWidget* parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    bool event(QEvent* event) override;

private:
    TextStyle m_style;
};

} // namespace lapsa
