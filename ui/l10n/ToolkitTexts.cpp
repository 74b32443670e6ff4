// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "ToolkitTexts.h"

#include "Localized.h"

#include <QByteArrayView>

#include <algorithm>
#include <array>

namespace lapsa {

using namespace Qt::StringLiterals;

namespace {

struct ToolkitText
{
    /// The class that shows the text.
    QByteArrayView context;
    QByteArrayView english;
    QStringView italian;
};

constexpr auto texts = std::to_array<ToolkitText>({
    {"QLineEdit", "&Undo", u"&Annulla"},
    {"QLineEdit", "&Redo", u"&Ripristina"},
    {"QLineEdit", "Cu&t", u"&Taglia"},
    {"QLineEdit", "&Copy", u"&Copia"},
    {"QLineEdit", "&Paste", u"&Incolla"},
    {"QLineEdit", "Delete", u"Elimina"},
    {"QLineEdit", "Select All", u"Seleziona tutto"},
    {"QWidgetTextControl", "&Undo", u"&Annulla"},
    {"QWidgetTextControl", "&Redo", u"&Ripristina"},
    {"QWidgetTextControl", "Cu&t", u"&Taglia"},
    {"QWidgetTextControl", "&Copy", u"&Copia"},
    {"QWidgetTextControl", "Copy &Link Location", u"Copia indiri&zzo del collegamento"},
    {"QWidgetTextControl", "&Paste", u"&Incolla"},
    {"QWidgetTextControl", "Delete", u"Elimina"},
    {"QWidgetTextControl", "Select All", u"Seleziona tutto"},
    {"QPlatformTheme", "OK", u"OK"},
    {"QPlatformTheme", "Cancel", u"Annulla"},
    {"QPlatformTheme", "&Yes", u"&Sì"},
    {"QPlatformTheme", "&No", u"&No"},
    {"QPlatformTheme", "Close", u"Chiudi"},
    {"QShortcut", "Del", u"Canc"},
    {"QShortcut", "Ins", u"Ins"},
    {"QShortcut", "Esc", u"Esc"},
    {"QShortcut", "Return", u"Invio"},
    {"QShortcut", "Space", u"Spazio"},
    {"QShortcut", "Shift", u"Maiusc"},
    {"QShortcut", "Backspace", u"Backspace"},
    {"QAccessibleActionInterface", "Press", u"Premi"},
    {"QAccessibleActionInterface", "Toggle", u"Commuta"},
    {"QAccessibleActionInterface", "Increase", u"Aumenta"},
    {"QAccessibleActionInterface", "Decrease", u"Diminuisci"},
    {"QAccessibleActionInterface", "ShowMenu", u"Mostra menu"},
    {"QAccessibleActionInterface", "SetFocus", u"Porta qui il focus"},
    {"QAccessibleActionInterface", "Scroll Left", u"Scorri a sinistra"},
    {"QAccessibleActionInterface", "Scroll Right", u"Scorri a destra"},
    {"QAccessibleActionInterface", "Scroll Up", u"Scorri in alto"},
    {"QAccessibleActionInterface", "Scroll Down", u"Scorri in basso"},
    {"QAccessibleActionInterface", "Previous Page", u"Pagina precedente"},
    {"QAccessibleActionInterface", "Next Page", u"Pagina successiva"},
    {"QAccessibleActionInterface", "Triggers the action", u"Esegue l’azione"},
    {"QAccessibleActionInterface", "Toggles the state", u"Cambia lo stato"},
    {"QAccessibleActionInterface", "Increase the value", u"Aumenta il valore"},
    {"QAccessibleActionInterface", "Decrease the value", u"Diminuisce il valore"},
    {"QAccessibleActionInterface", "Shows the menu", u"Mostra il menu"},
    {"QAccessibleActionInterface", "Sets the focus", u"Porta qui il focus"},
    {"QAccessibleActionInterface", "Scrolls to the left", u"Scorre a sinistra"},
    {"QAccessibleActionInterface", "Scrolls to the right", u"Scorre a destra"},
    {"QAccessibleActionInterface", "Scrolls up", u"Scorre in alto"},
    {"QAccessibleActionInterface", "Scrolls down", u"Scorre in basso"},
    {"QAccessibleActionInterface", "Goes back a page", u"Torna indietro di una pagina"},
    {"QAccessibleActionInterface", "Goes to the next page", u"Va alla pagina successiva"},
});

} // namespace

QString ToolkitTexts::translate(const char* context, const char* sourceText, const char*, int) const
{
    if (!Localized::isItalian()) {
        return {};
    }
    const auto found = std::ranges::find_if(texts, [context, sourceText](const ToolkitText& text) {
        return text.context == context && text.english == sourceText;
    });
    return found == texts.end() ? QString() : found->italian.toString();
}

} // namespace lapsa
