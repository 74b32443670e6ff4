// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "Card.h"
#include "DurationEditor.h"
#include "FocusRing.h"
#include "Gallery.h"
#include "Localized.h"
#include "Material.h"
#include "PushButton.h"
#include "RowIconButton.h"
#include "SegmentedControl.h"
#include "Symbols.h"
#include "TextLabel.h"
#include "ThemePalette.h"
#include "Toggle.h"

#include <QApplication>
#include <QLineEdit>
#include <QPainter>
#include <QSvgRenderer>
#include <QVBoxLayout>

namespace lapsa::test {

using namespace Qt::StringLiterals;

namespace {

constexpr int sheetSizes[] = {13, 16, 24, 48};
constexpr int cell = 64;

class Ground final : public QWidget
{
protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        material::paintWindow(painter, rect(), 0, palette());
    }
};

QWidget* makeButtons()
{
    auto* const widget = new QWidget;
    auto* const row = new QHBoxLayout(widget);
    row->setContentsMargins({});
    auto* const add =
        new PushButton(Localized::text(u"Add rule"_s, u"Aggiungi regola"_s), PushButton::Kind::Plain, widget);
    add->setSymbol(u"plus"_s);
    auto* const off = new PushButton(Localized::text(u"Save"_s, u"Salva"_s), PushButton::Kind::Default, widget);
    off->setEnabled(false);
    row->addWidget(add);
    row->addWidget(
        new PushButton(Localized::text(u"Remove rule"_s, u"Rimuovi regola"_s), PushButton::Kind::Destructive, widget));
    row->addStretch();
    row->addWidget(off);
    row->addWidget(new PushButton(Localized::text(u"Cancel"_s, u"Annulla"_s), PushButton::Kind::Plain, widget));
    row->addWidget(new PushButton(Localized::text(u"Save"_s, u"Salva"_s), PushButton::Kind::Default, widget));
    return widget;
}

QStringList symbolFiles()
{
    return QDir(u":/lapsa/symbols"_s).entryList(QDir::Files, QDir::Name);
}

} // namespace

void Gallery::paintControls()
{
    Ground ground;
    auto* const column = new QVBoxLayout(&ground);
    column->setContentsMargins(32, 28, 32, 28);
    column->setSpacing(20);
    auto* const section = new FormSection(Localized::text(u"General"_s, u"Generale"_s), &ground);
    std::int64_t minutes = 1500;
    section->card().addRow(
        Localized::defaultExpiry(),
        new DurationEditor(
            {.read = [&minutes] { return minutes; }, .write = [&minutes](std::int64_t m) { minutes = m; }}, {}));
    auto* const on = new Toggle(Localized::text(u"Use Trash instead of permanent delete"_s,
                                                u"Usa Cestino invece di eliminare definitivamente"_s));
    on->setChecked(true);
    section->card().addRow(on);
    section->card().addRow(new Toggle(Localized::pauseAll()));
    const QString themeTitle = Localized::text(u"Theme"_s, u"Tema"_s);
    auto* const theme =
        new SegmentedControl(themeTitle, {Localized::text(u"System"_s, u"Sistema"_s), u"Dark"_s, u"Light"_s});
    theme->setChosen(0);
    section->card().addRow(themeTitle, theme);
    auto* const extensions = new QLineEdit(u".pdf,.png"_s);
    extensions->setFont(fontFor(bodyText));
    section->card().addRow(extensions);
    column->addWidget(section);
    column->addWidget(makeButtons());
    new FocusRing(ground);
    ground.setFixedSize(620, ground.sizeHint().height());
    ground.show();
    ground.activateWindow();
    extensions->setFocus(Qt::TabFocusReason);
    save(ground, u"controls"_s);
}

/// Every symbol and picture at its usual sizes on a light and a dark ground.
void Gallery::paintArtwork()
{
    const double ratio = qApp->devicePixelRatio();
    const QStringList symbols = symbolFiles();
    const QStringList pictures = {u"StatusIcon"_s, u"org.lapsa.Lapsa"_s, u"LapsaLogo"_s, u"LapsaSplash"_s};
    const int columns = 2 * static_cast<int>(std::size(sheetSizes));
    QPixmap sheet(QSize(columns * cell, static_cast<int>(symbols.size() + pictures.size()) * cell) * ratio);
    sheet.setDevicePixelRatio(ratio);
    QPainter painter(&sheet);
    for (const ColorScheme scheme : {ColorScheme::Light, ColorScheme::Dark}) {
        const QPalette palette = themePalette(scheme);
        const int left = scheme == ColorScheme::Dark ? columns / 2 * cell : 0;
        painter.fillRect(QRect(left, 0, columns / 2 * cell, sheet.height()), themeColor(ColorRole::Window, palette));
        for (int column = 0; column < columns / 2; ++column) {
            int y = 0;
            const auto place = [&] {
                const int edge = sheetSizes[column];
                const QRect box(left + column * cell + (cell - edge) / 2, y + (cell - edge) / 2, edge, edge);
                y += cell;
                return box;
            };
            for (const QString& symbol : symbols) {
                const QRect box = place();
                painter.drawPixmap(box, symbolPixmap({symbol.chopped(4), box.width() / 1.25, SymbolWeight::Semibold,
                                                      themeColor(ColorRole::Primary, palette)},
                                                     ratio));
            }
            for (const QString& picture : pictures) {
                QSvgRenderer(u":/lapsa/%1.svg"_s.arg(picture)).render(&painter, place());
            }
        }
    }
    painter.end();
    sheet.save(m_folder.filePath(u"artwork@%1x.png"_s.arg(ratio)));
}

} // namespace lapsa::test
