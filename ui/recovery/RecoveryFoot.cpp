// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "RecoveryFoot.h"

#include "ElidedLabel.h"
#include "Localized.h"
#include "PushButton.h"
#include "RecoveryDelegate.h"

#include <QBoxLayout>
#include <QEvent>

namespace lapsa {

using namespace Qt::StringLiterals;

namespace {

constexpr int buttonSpacing = 10;

} // namespace

RecoveryFoot::RecoveryFoot(QWidget* parent)
    : QWidget(parent)
    , m_lines(new QBoxLayout(QBoxLayout::LeftToRight, this))
    , m_count(new ElidedLabel(calloutText, ColorRole::Secondary, this))
    , m_putBack(new PushButton(RecoveryDelegate::putBackText(), PushButton::Kind::Default, this))
    , m_delete(
          new PushButton(Localized::text(u"Delete now…"_s, u"Elimina ora…"_s), PushButton::Kind::Destructive, this))
{
    m_count->setElideMode(Qt::ElideRight);
    m_lines->setContentsMargins({});
    m_lines->setSpacing(buttonSpacing);
    m_lines->addWidget(m_count, 1);
    auto* const buttons = new QHBoxLayout;
    buttons->setSpacing(buttonSpacing);
    buttons->addStretch(1);
    buttons->addWidget(m_putBack);
    buttons->addWidget(m_delete);
    m_lines->addLayout(buttons);
    connect(m_putBack, &PushButton::clicked, this, &RecoveryFoot::putBackClicked);
    connect(m_delete, &PushButton::clicked, this, &RecoveryFoot::deleteClicked);
    setButtonsShown(false);
}

QString RecoveryFoot::count() const
{
    return m_count->text();
}

void RecoveryFoot::setCount(const QString& text)
{
    m_count->setText(text);
    arrange();
}

void RecoveryFoot::setButtonsShown(bool shown)
{
    m_putBack->setVisible(shown);
    m_delete->setVisible(shown);
    arrange();
}

bool RecoveryFoot::event(QEvent* event)
{
    const bool done = QWidget::event(event);
    // The toolkit passes a new font of the application to event() only, not to changeEvent().
    if (event->type() == QEvent::ApplicationFontChange) {
        arrange();
    }
    return done;
}

void RecoveryFoot::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    arrange();
}

/// As with the buttons even while they are hidden: the list must not jump with each selection.
void RecoveryFoot::arrange()
{
    const QSize putBack = m_putBack->sizeHint();
    const int wanted = m_count->sizeHint().width() + putBack.width() + m_delete->sizeHint().width() + 2 * buttonSpacing;
    const bool fits = wanted <= width();
    m_lines->setDirection(fits ? QBoxLayout::LeftToRight : QBoxLayout::TopToBottom);
    setFixedHeight(fits ? putBack.height() : putBack.height() + buttonSpacing + m_count->sizeHint().height());
}

} // namespace lapsa
