#include "ColumnTitles.h"

#include <QHash>
#include <QStringList>

#include <algorithm>
#include <initializer_list>

using namespace Qt::StringLiterals;

namespace ColumnTitles {
namespace {

const QHash<QString, Meaning> &WholeTitles()
{
    static const QHash<QString, Meaning> s_meanings = [] {
        QHash<QString, Meaning> meanings;
        const auto add = [&meanings](Meaning meaning, const char *titles) {
            for (const QString &title : QString::fromLatin1(titles).split(u'|'))
                meanings.insert(title, meaning);
        };
        add(Meaning::NameOrEither, "name|nom|namen|names");
        add(Meaning::NameOrFirst, "nombre|nome");
        add(Meaning::Name, "full name|fullname|display name|displayname|contact name|contact|fn|person|"
                           "anzeigename|angezeigter name|vollstandiger name|ganzer name|kontakt|kontaktname|"
                           "nom complet|nom affiche|nom a afficher|nom du contact|afficher comme|"
                           "nombre completo|nombre para mostrar|nombre mostrado|nombre del contacto|contacto|"
                           "nome completo|nome visualizzato|nominativo|nome contatto|contatto|"
                           "first and last name|first name last name|last name first name|vor und nachname|"
                           "vorname nachname|nachname vorname|name vorname|vorname name|nom et prenom|nom prenom|"
                           "prenom nom|prenom et nom|nom et prenoms|nombre y apellidos|nombre y apellido|"
                           "nombre apellidos|apellidos y nombre|apellidos nombre|mostrar como|nome e cognome|"
                           "nome cognome|cognome e nome|cognome nome");
        add(Meaning::FiledAs, "file as|filed as|speichern unter|classer sous|archivar como|archivia come");
        add(Meaning::FirstName, "first name|firstname|first|given name|givenname|forename|vorname|rufname|prenom|"
                                "nombre de pila|primer nombre|nome di battesimo|primo nome");
        add(Meaning::LastName, "last name|lastname|last|surname|family name|familyname|nachname|familienname|zuname|"
                               "nom de famille|apellido|apellidos|primer apellido|cognome");
        add(Meaning::CountryCode,
            "country code|countrycode|country calling code|phone country code|dialling code|"
            "dialing code|dial code|calling code|country|country region|land|lander|landervorwahl|"
            "landesvorwahl|landercode|landeskennzahl|land region|pays|pays region|indicatif|"
            "indicatif pays|indicatif du pays|code pays|code du pays|pais|pais o region|"
            "codigo de pais|codigo del pais|codigo pais|prefijo|prefijo internacional|"
            "prefijo de pais|paese|paese area geografica|codice paese|prefisso internazionale|"
            "prefisso paese");
        add(Meaning::Groups, "category|categories|group|groups|group membership|labels|tags|contact groups|"
                             "kategorie|kategorien|gruppe|gruppen|kontaktgruppe|kontaktgruppen|gruppenzugehorigkeit|"
                             "categorie|groupe|groupes|groupe de contacts|libelles|etiquettes|appartenance au groupe|"
                             "categoria|categorias|grupo|grupos|etiquetas|pertenencia a grupos|gruppo|gruppi|"
                             "etichette|appartenenza a gruppi");
        return meanings;
    }();
    return s_meanings;
}

bool HasWord(const QString &plain, std::initializer_list<QLatin1String> words)
{
    const QStringList parts = plain.split(u' ');
    return std::any_of(words.begin(), words.end(), [&parts](QLatin1String word) { return parts.contains(word); });
}

/// Also within the words that German joins.
bool Holds(const QString &plain, std::initializer_list<QLatin1String> pieces)
{
    return std::any_of(pieces.begin(), pieces.end(), [&plain](QLatin1String piece) { return plain.contains(piece); });
}

/// Where a word begins so.
bool HasStart(const QString &plain, std::initializer_list<QLatin1String> starts)
{
    const QString spaced = u' ' + plain;
    return std::any_of(starts.begin(), starts.end(),
                       [&spaced](QLatin1String start) { return spaced.contains(u' ' + start); });
}

bool TellsNumber(const QString &plain)
{
    return TellsMobile(plain) || (Holds(plain, {"phone"_L1, "telefon"_L1}) && !plain.contains("phonetic"_L1)) ||
           HasStart(plain, {"rufnummer"_L1, "festnetz"_L1, "telnr"_L1}) ||
           HasWord(plain, {"tel"_L1, "fon"_L1, "tlf"_L1, "telf"_L1, "tfno"_L1});
}

/// What is said of a number but is none.
bool TellsProperty(const QString &plain)
{
    return HasWord(plain, {"type"_L1,      "typ"_L1,  "tipo"_L1,     "label"_L1,     "carrier"_L1,  "provider"_L1,
                           "operator"_L1,  "netz"_L1, "anbieter"_L1, "operateur"_L1, "operador"_L1, "operatore"_L1,
                           "extension"_L1, "ext"_L1,  "code"_L1,     "vorwahl"_L1,   "prefix"_L1,   "model"_L1,
                           "modell"_L1,    "date"_L1, "datum"_L1,    "name"_L1,      "country"_L1,  "verified"_L1}) ||
           plain.contains("mail"_L1);
}

} // namespace

QString Plain(QStringView heading)
{
    QString plain;
    QChar before;
    for (const QChar c : heading.toString().normalized(QString::NormalizationForm_KD)) {
        if (c.isMark())
            continue;
        // Columns are named like variables, too.
        if (c.isUpper() && before.isLower())
            plain += u' ';
        plain += c.isLetterOrNumber() ? c.toLower() : u' ';
        before = c;
    }
    return plain.replace(u'\u00DF', "ss"_L1).simplified();
}

Meaning MeaningOf(const QString &plain)
{
    if (const auto whole = WholeTitles().constFind(plain); whole != WholeTitles().constEnd())
        return *whole;
    if (!TellsNumber(plain) || TellsOther(plain))
        return Meaning::None;
    if (SeriesOf(plain) != plain && HasWord(plain, {"type"_L1, "typ"_L1, "tipo"_L1, "label"_L1}))
        return Meaning::NumberLabel;
    return TellsProperty(plain) ? Meaning::None : Meaning::Number;
}

QString SeriesOf(const QString &plain)
{
    const qsizetype space = plain.lastIndexOf(u' ');
    const QString last = plain.sliced(space + 1);
    const bool isEnding = HasWord(last, {"value"_L1, "type"_L1, "typ"_L1, "tipo"_L1, "label"_L1, "number"_L1});
    return isEnding && space > 0 ? plain.first(space) : plain;
}

bool TellsMobile(const QString &plain)
{
    return Holds(plain, {"handy"_L1, "mobiltel"_L1, "whatsapp"_L1, "whats app"_L1}) ||
           HasStart(plain, {"mobil"_L1, "cell"_L1, "celular"_L1, "movil"_L1, "smartphone"_L1}) ||
           HasWord(plain, {"cel"_L1, "gsm"_L1, "natel"_L1, "portable"_L1, "portables"_L1, "iphone"_L1, "sms"_L1});
}

bool TellsLandline(const QString &plain)
{
    return HasStart(plain,
                    {"geschaft"_L1, "dienst"_L1, "arbeit"_L1, "buro"_L1, "haupt"_L1, "privat"_L1, "profession"_L1}) ||
           Holds(plain, {"festnetz"_L1, "landline"_L1}) ||
           HasWord(plain, {"home"_L1,    "work"_L1,   "business"_L1,   "office"_L1,    "main"_L1,       "domicile"_L1,
                           "maison"_L1,  "bureau"_L1, "travail"_L1,    "fixe"_L1,      "pro"_L1,        "personnel"_L1,
                           "casa"_L1,    "fijo"_L1,   "trabajo"_L1,    "oficina"_L1,   "particular"_L1, "fisso"_L1,
                           "ufficio"_L1, "lavoro"_L1, "abitazione"_L1, "principal"_L1, "principale"_L1});
}

bool TellsOther(const QString &plain)
{
    // A company's mobile is in the hands of one person.
    const bool isShared = HasStart(plain, {"compan"_L1, "firm"_L1, "societ"_L1, "empresa"_L1, "aziend"_L1});
    return (isShared && !TellsMobile(plain)) || Holds(plain, {"fax"_L1, "pager"_L1, "telex"_L1}) ||
           HasStart(plain, {"assist"_L1, "asist"_L1, "secret"_L1, "sekret"_L1, "segret"_L1, "callback"_L1, "ruckruf"_L1,
                            "ruckmeld"_L1, "rappel"_L1, "radio"_L1, "emergenc"_L1, "emergenz"_L1, "notfall"_L1,
                            "urgenc"_L1, "horbehind"_L1, "ayudant"_L1, "beeper"_L1}) ||
           HasWord(plain, {"isdn"_L1, "tty"_L1, "tdd"_L1, "ttytdd"_L1, "funk"_L1});
}

} // namespace ColumnTitles
