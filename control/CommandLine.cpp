// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "CommandLine.h"

#include "FileUri.h"
#include "Localized.h"

#include <QCommandLineParser>
#include <QHash>
#include <QRegularExpression>

#include <utility>

namespace lapsa {

using namespace Qt::StringLiterals;

namespace {

using Verb = CommandLine::Verb;

constexpr qint64 longestLifespan = 525'600;

const QString englishHelp = uR"(Usage: lapsactl [OPTION]… COMMAND [NAME]…
Works with the running Lapsa from a terminal or a script.

Commands:
  add [--for LIFESPAN] FILE…  put files on countdown, for 2h, 30min, 1d12h …;
                              without --for, as the rules say
  list                        show what is on countdown
  lock NAME…, unlock NAME…    keep files past their time; let them go
  remove NAME…                take off the list; the files stay
  recovered                   show what is in Recovery
  put-back NAME…              move back from Recovery to where it was

A NAME is a path, a file name or an id.

Options:
  --json     print JSON: an array of objects
  --help     show this text
  --version  show the version

Exit status: 0 all done, 1 something was not done, 2 wrong usage,
3 Lapsa is not running. “add” and “put-back” start it.
)"_s;

const QString italianHelp = uR"(Uso: lapsactl [OPZIONE]… COMANDO [NOME]…
Usa il Lapsa in esecuzione da un terminale o da uno script.

Comandi:
  add [--for DURATA] FILE…    imposta una scadenza, tra 2h, 30min, 1d12h …;
                              senza --for, secondo le regole
  list                        mostra che cosa ha una scadenza
  lock NOME…, unlock NOME…    trattiene i file oltre la scadenza; li libera
  remove NOME…                toglie dall'elenco; i file restano
  recovered                   mostra che cosa c'è nel recupero
  put-back NOME…              riporta dal recupero al posto di prima

NOME è un percorso, il nome di un file o un id.

Opzioni:
  --json     scrive JSON: un array di oggetti
  --help     mostra questo testo
  --version  mostra la versione

Stato d'uscita: 0 fatto tutto, 1 qualcosa non fatto, 2 uso errato,
3 Lapsa non è in esecuzione. “add” e “put-back” lo avviano.
)"_s;

QString quoted(const QString& text)
{
    return u"“%1”"_s.arg(text);
}

CommandLine wrong(const QString& error)
{
    return {.names = {}, .error = error};
}

/// The arguments as text; what is not UTF-8 is the first of the pair.
std::pair<std::optional<QByteArray>, QStringList> textsOf(const QList<QByteArray>& arguments)
{
    QStringList texts{u"lapsactl"_s};
    for (const QByteArray& argument : arguments) {
        const std::optional<QString> text = textOfUtf8(argument);
        if (!text) {
            return {argument, {}};
        }
        texts.push_back(*text);
    }
    return {std::nullopt, texts};
}

/// What is wrong with the names given to a command; empty if nothing.
QString errorOfNames(Verb verb, const QStringList& names)
{
    const bool takesNone = verb == Verb::List || verb == Verb::Recovered;
    if (takesNone && !names.isEmpty()) {
        return Localized::text(u"Nothing may follow this command: %1"_s,
                               u"A questo comando non può seguire nulla: %1"_s)
            .arg(quoted(names.first()));
    }
    if (!takesNone && names.isEmpty()) {
        return verb == Verb::Add ? Localized::text(u"No file is given"_s, u"Nessun file indicato"_s)
                                 : Localized::text(u"No name is given"_s, u"Nessun nome indicato"_s);
    }
    return {};
}

CommandLine readCommand(const QCommandLineParser& parser, const QCommandLineOption& lifespan)
{
    static const QHash<QString, Verb> verbs{{u"add"_s, Verb::Add},         {u"list"_s, Verb::List},
                                            {u"lock"_s, Verb::Lock},       {u"unlock"_s, Verb::Unlock},
                                            {u"remove"_s, Verb::Remove},   {u"recovered"_s, Verb::Recovered},
                                            {u"put-back"_s, Verb::PutBack}};
    QStringList names = parser.positionalArguments();
    if (names.isEmpty()) {
        return wrong(Localized::text(u"No command is given"_s, u"Nessun comando indicato"_s));
    }
    const QString word = names.takeFirst();
    const auto verb = verbs.constFind(word);
    if (verb == verbs.cend()) {
        return wrong(Localized::text(u"There is no command %1"_s, u"Il comando %1 non esiste"_s).arg(quoted(word)));
    }
    if (const QString error = errorOfNames(*verb, names); !error.isEmpty()) {
        return wrong(error);
    }
    int minutes = 0;
    if (parser.isSet(lifespan)) {
        const std::optional<int> given = minutesOf(parser.value(lifespan));
        if (*verb != Verb::Add || !given) {
            return wrong(*verb != Verb::Add
                             ? Localized::text(u"--for goes with “add” only"_s, u"--for vale solo con “add”"_s)
                             : Localized::text(u"A lifespan reads 2h, 30min or 1d12h, up to 365d; this does not: %1"_s,
                                               u"Una durata si scrive 2h, 30min o 1d12h, fino a 365d; non così: %1"_s)
                                   .arg(quoted(parser.value(lifespan))));
        }
        minutes = *given;
    }
    return {.verb = *verb, .minutes = minutes, .json = parser.isSet(u"json"_s), .names = names};
}

} // namespace

CommandLine readCommandLine(const QList<QByteArray>& arguments)
{
    const auto [unreadable, texts] = textsOf(arguments);
    if (unreadable) {
        return wrong(Localized::text(u"An argument is not valid UTF-8: %1"_s, u"Un argomento non è UTF-8 valido: %1"_s)
                         .arg(quoted(QString::fromUtf8(*unreadable))));
    }
    const QCommandLineOption lifespan(u"for"_s, {}, u"lifespan"_s);
    QCommandLineParser parser;
    parser.addOptions({lifespan, QCommandLineOption(u"json"_s), QCommandLineOption(QStringList{u"h"_s, u"help"_s}),
                       QCommandLineOption(u"version"_s)});
    const bool readable = parser.parse(texts);
    if (parser.isSet(u"help"_s)) {
        return {.verb = Verb::Help, .names = {}};
    }
    if (parser.isSet(u"version"_s)) {
        return {.verb = Verb::Version, .names = {}};
    }
    if (!readable) {
        const QStringList unknown = parser.unknownOptionNames();
        return wrong(unknown.isEmpty()
                         ? Localized::text(u"A value is missing after --for"_s, u"Manca un valore dopo --for"_s)
                         : Localized::text(u"There is no option %1"_s, u"L'opzione %1 non esiste"_s)
                               .arg(quoted(unknown.first())));
    }
    return readCommand(parser, lifespan);
}

std::optional<int> minutesOf(const QString& lifespan)
{
    static const QRegularExpression form(u"^(?:(\\d{1,6})d)?(?:(\\d{1,6})h)?(?:(\\d{1,6})m(?:in)?)?$"_s);
    constexpr qint64 minutesPerHour = 60;
    constexpr qint64 minutesPerDay = 24 * minutesPerHour;
    const QRegularExpressionMatch match = form.match(lifespan);
    if (!match.hasMatch()) {
        return std::nullopt;
    }
    const qint64 minutes = match.captured(1).toLongLong() * minutesPerDay +
                           match.captured(2).toLongLong() * minutesPerHour + match.captured(3).toLongLong();
    return minutes >= 1 && minutes <= longestLifespan ? std::optional(int(minutes)) : std::nullopt;
}

QString helpText()
{
    return Localized::text(englishHelp, italianHelp);
}

} // namespace lapsa
