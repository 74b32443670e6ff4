// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QTabBar>

namespace lapsa {

/// The tabs of a window, each with a symbol and a text, as segments of one control.
class SymbolTabBar final : public QTabBar
{
    Q_OBJECT

public:
    explicit SymbolTabBar(QWidget* parent = nullptr);

    /// Adds a tab at the end.
    void addTab(const QString& symbol, const QString& text);

protected:
    [[nodiscard]] QSize tabSizeHint(int index) const override;
    [[nodiscard]] QSize minimumTabSizeHint(int index) const override;
    void paintEvent(QPaintEvent* event) override;
    bool event(QEvent* event) override;

private:
    /// Whether there is room for texts only.
    [[nodiscard]] bool narrow() const;
    [[nodiscard]] int fullWidth(int index) const;
    void paintTab(QPainter& painter, int index) const;
};

} // namespace lapsa
