// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QColor>
#include <QVariantAnimation>
#include <QWidget>

#include <optional>

namespace lapsa {

/// The thin bar on the lower edge of a row while its file is being moved or removed. If the end is not known, a short
/// piece drifts slowly from side to side; where nothing may move, the whole bar is lit faintly.
class WorkBar final : public QWidget
{
    Q_OBJECT

public:
    struct Look
    {
        QColor track;
        QColor fill;
        /// The lit part, within the bar.
        QRectF filled;

        friend bool operator==(const Look&, const Look&) = default;
    };

    /// What a bar shows.
    struct Position
    {
        /// The part that is done, 0 to 1; nothing if the end is not known.
        std::optional<double> progress;
        /// Where the piece is, from 0 at one side to 1 at the other; nothing if it may not move.
        std::optional<double> drift;

        friend bool operator==(const Position&, const Position&) = default;
    };

    explicit WorkBar(QWidget* parent);

    [[nodiscard]] static Look lookFor(const Position& position, const QWidget& bar);

    /// The part that is done, 0 to 1; nothing if the end is not known.
    void setProgress(std::optional<double> progress);

    [[nodiscard]] std::optional<double> progress() const { return m_progress; }

    /// Whether it moves by itself now.
    [[nodiscard]] bool drifts() const { return m_drift.state() == QAbstractAnimation::Running; }

    static constexpr int thickness = 3;

protected:
    void paintEvent(QPaintEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void driftIfNeeded();
    [[nodiscard]] Position position() const;

    std::optional<double> m_progress;
    QVariantAnimation m_drift;
};

} // namespace lapsa
