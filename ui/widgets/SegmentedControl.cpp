// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "SegmentedControl.h"

#include "FocusRing.h"
#include "Segments.h"
#include "TextStyle.h"

#include <QButtonGroup>
#include <QEvent>
#include <QFontMetrics>
#include <QHBoxLayout>
#include <QPainter>
#include <QRadioButton>
#include <QScopedValueRollback>

#include <algorithm>

namespace lapsa {

namespace {

constexpr TextStyle restText{13, QFont::Normal};
constexpr TextStyle chosenText{13, QFont::Medium};
constexpr int horizontalPadding = 14;
constexpr int verticalPadding = 4;
constexpr int leastHeight = 24;

/// A radio button drawn as a segment of the control.
class Segment final : public QRadioButton
{
public:
    Segment(const QString& text, QWidget* parent)
        : QRadioButton(text, parent)
    {
        setFont(fontFor(chosenText));
        setAttribute(Qt::WA_Hover);
        setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
        setFocusRadius(*this, segments::trackRadius - segments::inset);
    }

    [[nodiscard]] QSize sizeHint() const override
    {
        const QFontMetrics metrics(font());
        return {metrics.horizontalAdvance(text()) + 2 * horizontalPadding,
                std::max(leastHeight, metrics.height() + 2 * verticalPadding)};
    }

    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent*) override
    {
        const segments::State state{isChecked(), underMouse(), isEnabled()};
        QPainter painter(this);
        segments::paintSegment(painter, rect(), state, palette());
        painter.setFont(fontFor(isChecked() ? chosenText : restText));
        painter.setPen(segments::textColor(state, palette()));
        painter.drawText(rect(), Qt::AlignCenter | Qt::TextSingleLine, text());
    }

    bool event(QEvent* event) override
    {
        if (event->type() == QEvent::ApplicationFontChange) {
            setFont(fontFor(chosenText));
            updateGeometry();
        }
        return QRadioButton::event(event);
    }

    [[nodiscard]] bool hitButton(const QPoint& position) const override { return rect().contains(position); }
};

} // namespace

SegmentedControl::SegmentedControl(const QString& name, const QStringList& texts, QWidget* parent)
    : QWidget(parent)
    , m_group(new QButtonGroup(this))
{
    setAccessibleName(name);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    auto* const row = new QHBoxLayout(this);
    row->setContentsMargins(segments::inset, segments::inset, segments::inset, segments::inset);
    row->setSpacing(segments::inset - 1);
    for (const QString& text : texts) {
        auto* const segment = new Segment(text, this);
        m_group->addButton(segment, static_cast<int>(m_group->buttons().size()));
        row->addWidget(segment);
    }
    connect(m_group, &QButtonGroup::idToggled, this, [this](int index, bool on) {
        if (on && !m_showing) {
            emit chosenByUser(index);
        }
    });
}

int SegmentedControl::chosen() const
{
    return m_group->checkedId();
}

void SegmentedControl::setChosen(int index)
{
    if (QAbstractButton* const button = m_group->button(index)) {
        const QScopedValueRollback showing(m_showing, true);
        button->setChecked(true);
    }
}

void SegmentedControl::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    segments::paintTrack(painter, rect(), palette());
}

} // namespace lapsa
