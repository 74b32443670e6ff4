// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "HoverButton.h"

namespace lapsa {

/// A button that looks like a link in the panel's message: accent colour, underlined under the pointer.
class LinkButton final : public HoverButton
{
    Q_OBJECT

public:
    explicit LinkButton(const QString& text, QWidget* parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    bool event(QEvent* event) override;
};

} // namespace lapsa
