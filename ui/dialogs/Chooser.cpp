// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "Chooser.h"

#include "ChooserModel.h"
#include "ChooserPlaces.h"
#include "ElidedLabel.h"
#include "FocusRing.h"
#include "Localized.h"
#include "Material.h"
#include "PushButton.h"
#include "SymbolButton.h"
#include "TextLabel.h"

#include <QAction>
#include <QCompleter>
#include <QDir>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPainter>
#include <QShortcut>
#include <QSignalBlocker>
#include <QTreeView>
#include <QVBoxLayout>

#include <algorithm>

namespace lapsa {

using namespace Qt::StringLiterals;

namespace {

constexpr QSize filesExtent(760, 520);
constexpr QSize folderExtent(640, 460);
constexpr QSize leastExtent(480, 340);
constexpr int margin = 20;
constexpr int spacing = 12;
constexpr int navigationSpacing = 6;
constexpr int buttonSpacing = 10;
constexpr int navigationExtent = 30;
constexpr double navigationSymbol = 13;
constexpr QSize iconExtent(20, 20);

} // namespace

Chooser::Chooser(const Purpose& purpose, const QString& startFolder, QWidget* parent)
    : QDialog(parent)
    , m_oneFolder(purpose.oneFolder)
    , m_model(new ChooserModel(purpose.oneFolder, this))
{
    setWindowTitle(purpose.title);
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    setMinimumSize(leastExtent);
    resize(purpose.oneFolder ? folderExtent : filesExtent);
    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(margin, margin, margin, margin);
    column->setSpacing(spacing);
    column->addLayout(makePathRow());
    column->addLayout(makeListRow(), 1);
    column->addLayout(makeFieldRow(purpose.fieldLabel));
    column->addLayout(makeButtonRow());
    makeShortcuts();
    new FocusRing(*this);
    showFolder(QDir(startFolder).exists() && !startFolder.isEmpty() ? startFolder : QDir::homePath(), false);
    m_field->setFocus();
    connect(m_field, &QLineEdit::textEdited, m_names, &QTreeView::clearSelection);
    connect(m_field, &QLineEdit::textChanged, this, &Chooser::refreshButtons);
    connect(m_field, &QLineEdit::returnPressed, this, &Chooser::openTyped);
    connect(m_names, &QTreeView::doubleClicked, this, &Chooser::enterSelected);
    connect(m_places, &ChooserPlaces::chosen, this, &Chooser::goTo);
}

bool Chooser::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_names && event->type() == QEvent::KeyPress) {
        switch (static_cast<QKeyEvent*>(event)->key()) {
        case Qt::Key_Return:
        case Qt::Key_Enter:
            enterSelected();
            return true;
        case Qt::Key_Backspace:
            goUp();
            return true;
        default:
            break;
        }
    }
    return QDialog::eventFilter(watched, event);
}

void Chooser::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    // The window manager draws the window's edge: the ground's own hairline is moved outside.
    material::paintWindow(painter, rect().adjusted(-1, -1, 1, 1), 0, palette());
}

QHBoxLayout* Chooser::makePathRow()
{
    const auto button = [this](const QString& symbol, const QString& help, void (Chooser::*go)()) {
        auto* const made = new SymbolButton(
            {.symbol = symbol, .size = navigationSymbol, .weight = SymbolWeight::Semibold, .extent = navigationExtent},
            help, this);
        connect(made, &SymbolButton::clicked, this, go);
        return made;
    };
    m_backButton = button(u"chevron.left"_s, Localized::text(u"Back"_s, u"Indietro"_s), &Chooser::goBack);
    m_forwardButton = button(u"chevron.right"_s, Localized::text(u"Forward"_s, u"Avanti"_s), &Chooser::goForward);
    m_upButton = button(u"arrow.up"_s, Localized::text(u"Enclosing folder"_s, u"Cartella superiore"_s), &Chooser::goUp);
    m_path = new ElidedLabel(headlineText, ColorRole::Primary, this);
    auto* const row = new QHBoxLayout;
    row->setSpacing(navigationSpacing);
    row->addWidget(m_backButton);
    row->addWidget(m_forwardButton);
    row->addWidget(m_upButton);
    row->addSpacing(navigationSpacing);
    row->addWidget(m_path, 1);
    return row;
}

QHBoxLayout* Chooser::makeListRow()
{
    m_places = new ChooserPlaces(this);
    m_names = new QTreeView(this);
    setUpNames();
    auto* const row = new QHBoxLayout;
    row->setSpacing(spacing);
    row->addWidget(m_places);
    row->addWidget(m_names, 1);
    return row;
}

void Chooser::setUpNames()
{
    m_names->setObjectName(u"treeView"_s);
    m_names->setAccessibleName(Localized::text(u"Contents"_s, u"Contenuto"_s));
    m_names->setFont(fontFor(bodyText));
    m_names->setModel(m_model);
    m_names->setIconSize(iconExtent);
    m_names->setRootIsDecorated(false);
    m_names->setItemsExpandable(false);
    m_names->setExpandsOnDoubleClick(false);
    m_names->setUniformRowHeights(true);
    m_names->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_names->setDragDropMode(QAbstractItemView::NoDragDrop);
    m_names->setSelectionMode(m_oneFolder ? QAbstractItemView::SingleSelection : QAbstractItemView::ExtendedSelection);
    m_names->setAllColumnsShowFocus(true);
    m_names->setSortingEnabled(true);
    m_names->sortByColumn(ChooserModel::Name, Qt::AscendingOrder);
    m_names->setColumnHidden(ChooserModel::Type, true);
    m_names->setColumnHidden(ChooserModel::Size, m_oneFolder);
    QHeaderView& header = *m_names->header();
    header.setFont(fontFor(calloutText));
    header.setStretchLastSection(false);
    header.setSectionsMovable(false);
    header.setSectionResizeMode(QHeaderView::ResizeToContents);
    header.setSectionResizeMode(ChooserModel::Name, QHeaderView::Stretch);
    m_names->installEventFilter(this);
    connect(m_names->selectionModel(), &QItemSelectionModel::selectionChanged, this, &Chooser::fillField);
}

QHBoxLayout* Chooser::makeFieldRow(const QString& label)
{
    auto* const text = new TextLabel(label, bodyText, ColorRole::Primary, this);
    m_field = new QLineEdit(this);
    m_field->setObjectName(u"fileNameEdit"_s);
    m_field->setFont(fontFor(bodyText));
    m_field->setAccessibleName(QString(label).remove(u':'));
    auto* const completer = new QCompleter(m_model, m_field);
    m_field->setCompleter(completer);
    text->setBuddy(m_field);
    auto* const row = new QHBoxLayout;
    row->setSpacing(buttonSpacing);
    row->addWidget(text);
    row->addWidget(m_field, 1);
    return row;
}

QHBoxLayout* Chooser::makeButtonRow()
{
    auto* const cancel = new PushButton(Localized::text(u"Cancel"_s, u"Annulla"_s), PushButton::Kind::Plain, this);
    m_add = new PushButton(Localized::text(u"Add"_s, u"Aggiungi"_s), PushButton::Kind::Default, this);
    connect(cancel, &PushButton::clicked, this, &Chooser::reject);
    connect(m_add, &PushButton::clicked, this, &Chooser::add);
    auto* const row = new QHBoxLayout;
    row->setSpacing(buttonSpacing);
    row->addStretch();
    row->addWidget(cancel);
    row->addWidget(m_add);
    return row;
}

void Chooser::makeShortcuts()
{
    const auto shortcut = [this](const QKeySequence& keys, void (Chooser::*go)()) {
        connect(new QShortcut(keys, this), &QShortcut::activated, this, go);
    };
    shortcut(Qt::ALT | Qt::Key_Left, &Chooser::goBack);
    shortcut(Qt::ALT | Qt::Key_Right, &Chooser::goForward);
    shortcut(Qt::ALT | Qt::Key_Up, &Chooser::goUp);
    auto* const hidden = new QAction(Localized::text(u"Show hidden files"_s, u"Mostra file nascosti"_s), this);
    hidden->setCheckable(true);
    hidden->setShortcut(Qt::CTRL | Qt::Key_H);
    hidden->setShortcutContext(Qt::WindowShortcut);
    connect(hidden, &QAction::toggled, m_model, &ChooserModel::setHiddenShown);
    m_names->addAction(hidden);
    m_names->setContextMenuPolicy(Qt::ActionsContextMenu);
}

} // namespace lapsa
