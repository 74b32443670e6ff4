// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "Localized.h"

#include "Language.h"

#include <QLocale>

namespace lapsa {

using namespace Qt::StringLiterals;

namespace {

QLocale shownLocale()
{
    return QLocale(Localized::isItalian() ? QLocale::Italian : QLocale::English);
}

} // namespace

bool Localized::isItalian()
{
    return currentLanguageCode() == "it"_L1;
}

QString Localized::text(const QString& english, const QString& italian)
{
    return isItalian() ? italian : english;
}

QString Localized::number(std::int64_t number)
{
    return shownLocale().toString(qlonglong{number});
}

QString Localized::fileCount(std::int64_t files)
{
    return files == 1 ? u"1 file"_s : text(u"%1 files"_s, u"%1 file"_s).arg(number(files));
}

QString Localized::dataSize(std::int64_t bytes)
{
    constexpr int decimals = 1;
    constexpr std::int64_t unit = 1024;
    if (bytes < unit) {
        return bytes == 1 ? u"1 byte"_s : text(u"%1 bytes"_s, u"%1 byte"_s).arg(number(bytes));
    }
    return shownLocale().formattedDataSize(bytes, decimals, QLocale::DataSizeTraditionalFormat);
}

QString Localized::openLapsa()
{
    return text(u"Open Lapsa"_s, u"Apri Lapsa"_s);
}

QString Localized::preferences()
{
    return text(u"Preferences"_s, u"Preferenze"_s);
}

QString Localized::addFinderSelection()
{
    return text(u"Add Finder selection"_s, u"Aggiungi selezione Finder"_s);
}

QString Localized::openDataFolder()
{
    return text(u"Open data folder"_s, u"Apri cartella dati"_s);
}

QString Localized::quit()
{
    return text(u"Quit"_s, u"Esci"_s);
}

QString Localized::notificationTitle()
{
    return text(u"Lapsa alert"_s, u"Avviso Lapsa"_s);
}

QString Localized::notificationBody()
{
    return text(u"%@ will self-destruct in %d minutes."_s, u"%@ verrà eliminato tra %d minuti."_s);
}

QString Localized::temporaryCountdowns()
{
    return text(u"Temporary countdowns for files"_s, u"Conti alla rovescia temporanei per i file"_s);
}

QString Localized::dropFiles()
{
    return text(u"Drop files or folders here, or click to select"_s,
                u"Trascina file o cartelle qui, o clicca per selezionare"_s);
}

QString Localized::defaultExpiry()
{
    return text(u"Default expiry"_s, u"Scadenza predefinita"_s);
}

QString Localized::filesPresent()
{
    return text(u"items present"_s, u"elementi presenti"_s);
}

QString Localized::filePresent()
{
    return text(u"item present"_s, u"elemento presente"_s);
}

QString Localized::nothingHere()
{
    return text(u"Nothing here. Add a file or folder to start a countdown."_s,
                u"Niente qui. Aggiungi un file o una cartella per avviare un conto alla rovescia."_s);
}

QString Localized::pauseAll()
{
    return text(u"Pause all countdowns"_s, u"Metti in pausa tutti i countdown"_s);
}

QString Localized::recovery()
{
    return text(u"Recovery"_s, u"Recupero"_s);
}

QString Localized::useRecovery()
{
    return text(u"Use recovery window before final cleanup"_s, u"Usa finestra di recupero prima dell’eliminazione"_s);
}

QString Localized::retention()
{
    return text(u"Recovery retention"_s, u"Conservazione recupero"_s);
}

QString Localized::fileTypeRules()
{
    return text(u"File type rules"_s, u"Regole per tipo file"_s);
}

QString Localized::autoCleanFolders()
{
    return text(u"Auto-clean folders"_s, u"Pulizia automatica cartelle"_s);
}

QString Localized::waitingForDisk()
{
    return text(u"Waiting for the disk"_s, u"In attesa del disco"_s);
}

QString Localized::daysShort()
{
    return text(u"d"_s, u"g"_s);
}

// The same in both languages, but kept in the table so that it has no exceptions.
QString Localized::hoursShort()
{
    return text(u"h"_s, u"h"_s);
}

QString Localized::minutesShort()
{
    return text(u"min"_s, u"min"_s);
}

QString Localized::durationDays()
{
    return text(u"Days"_s, u"Giorni"_s);
}

QString Localized::durationHours()
{
    return text(u"Hours"_s, u"Ore"_s);
}

QString Localized::durationMinutes()
{
    return text(u"Minutes"_s, u"Minuti"_s);
}

} // namespace lapsa
