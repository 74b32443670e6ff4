// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "AlertDialog.h"

#include "FocusRing.h"
#include "Material.h"
#include "Picture.h"
#include "PushButton.h"
#include "TextLabel.h"

#include <QPainter>
#include <QVBoxLayout>

#include <algorithm>

namespace lapsa {

using namespace Qt::StringLiterals;

namespace {

constexpr TextStyle messageText{15, QFont::DemiBold};
constexpr int dialogWidth = 300;
constexpr int margin = 24;
constexpr int pictureExtent = 64;
constexpr int pictureSpacing = 16;
constexpr int textSpacing = 6;
constexpr int buttonSpacing = 24;
constexpr int besideSpacing = 8;

} // namespace

AlertDialog::AlertDialog(const QString& message, const QString& information, QWidget* parent)
    : QDialog(parent)
{
    auto* const button = new PushButton(u"OK"_s, PushButton::Kind::Default, this);
    makeTexts(message, information)->addWidget(button);
    button->setFocus();
    connect(button, &PushButton::clicked, this, &QDialog::accept);
    finish();
}

AlertDialog::AlertDialog(const Question& question, QWidget* parent)
    : QDialog(parent)
{
    auto* const cancel = new PushButton(question.cancel, PushButton::Kind::Plain, this);
    auto* const action = new PushButton(question.action, PushButton::Kind::Destructive, this);
    const int needed = 2 * std::max(cancel->sizeHint().width(), action->sizeHint().width()) + besideSpacing;
    auto* const buttons =
        new QBoxLayout(needed > dialogWidth - 2 * margin ? QBoxLayout::BottomToTop : QBoxLayout::LeftToRight);
    buttons->setSpacing(besideSpacing);
    buttons->addWidget(cancel, 1);
    buttons->addWidget(action, 1);
    makeTexts(question.message, question.information)->addLayout(buttons);
    cancel->setFocus();
    connect(cancel, &PushButton::clicked, this, &QDialog::reject);
    connect(action, &PushButton::clicked, this, &QDialog::accept);
    finish();
}

QVBoxLayout* AlertDialog::makeTexts(const QString& message, const QString& information)
{
    setWindowTitle(message);
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    setWindowModality(Qt::ApplicationModal);
    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(margin, margin, margin, margin);
    column->setSpacing(0);
    column->addWidget(makePicture(), 0, Qt::AlignHCenter);
    column->addSpacing(pictureSpacing);
    auto* const title = new TextLabel(message, messageText, ColorRole::Primary, this);
    title->setAlignment(Qt::AlignCenter);
    column->addWidget(title);
    column->addSpacing(textSpacing);
    auto* const text = new TextLabel(information, bodyText, ColorRole::Secondary, this);
    text->setAlignment(Qt::AlignCenter);
    column->addWidget(text);
    column->addSpacing(buttonSpacing);
    setAccessibleDescription(information);
    return column;
}

void AlertDialog::finish()
{
    setFixedWidth(dialogWidth);
    setFixedHeight(layout()->totalHeightForWidth(dialogWidth));
    new FocusRing(*this);
}

void AlertDialog::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    // The window manager draws the window's edge: the ground's own hairline is moved outside.
    material::paintWindow(painter, rect().adjusted(-1, -1, 1, 1), 0, palette());
}

QWidget* AlertDialog::makePicture()
{
    auto* const picture = new QLabel(this);
    picture->setPixmap(
        svgPicture(u":/lapsa/LapsaLogo.svg"_s, QSize(pictureExtent, pictureExtent), devicePixelRatioF()));
    picture->setFixedSize(pictureExtent, pictureExtent);
    return picture;
}

} // namespace lapsa
