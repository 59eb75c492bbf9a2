#include "MessageCommands.h"

#include "CommandOptions.h"
#include "Database.h"
#include "KannelConfiguration.h"
#include "MessageLookup.h"
#include "RestoredCopy.h"
#include "StoreStatus.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDateTime>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTextStream>

#include <algorithm>
#include <limits>

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 kMostId = std::numeric_limits<qint64>::max();

QString Tr(const char *text)
{
    return QCoreApplication::translate("MessageCommands", text);
}

QString Time(qint64 milliseconds)
{
    return QDateTime::fromMSecsSinceEpoch(milliseconds, Qt::UTC).toString(Qt::ISODate);
}

QByteArray AsJson(const MessageLine &line)
{
    const QJsonObject object{{u"id"_s, line.id},
                             {u"user"_s, line.user},
                             {u"number"_s, line.number},
                             {u"name"_s, line.name},
                             {u"text"_s, line.text},
                             {u"state"_s, WordOf(line.state)},
                             {u"attempts"_s, line.attempts},
                             {u"accepted"_s, Time(line.accepted)},
                             {u"changed"_s, Time(line.changed)},
                             {u"note"_s, line.note},
                             {u"refunded"_s, line.isRefunded}};
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

/// One line, whatever the message holds.
QString AsLine(const MessageLine &line)
{
    const QString refunded = line.isRefunded ? Tr(" (refunded)") : QString();
    const QString note = line.note.isEmpty() ? QString() : u"  ["_s + line.note.simplified() + u']';
    return u"%1  %2  %3  %4  %5  %6"_s.arg(line.id, 6)
               .arg(Time(line.accepted))
               .arg(WordOf(line.state) + refunded, -11)
               .arg(line.user, line.number, line.text)
               .simplified() +
           note;
}

int List(const CommandInput &input)
{
    std::optional<MessageState> state;
    if (input.options.isSet(u"state"_s)) {
        state = StateOf(input.options.value(u"state"_s));
        if (!state)
            ServiceCommands::Refuse(Tr("There is no state \"%1\".").arg(input.options.value(u"state"_s)));
    }
    std::optional<QString> user;
    if (input.options.isSet(u"user"_s))
        user = input.options.value(u"user"_s);
    const qint64 limit = ServiceCommands::Number(input.options, u"limit"_s, 1, kMostId);
    Database database = CommandOptions::OpenDatabase(input.options);
    const bool isJson = input.options.isSet(u"json"_s);
    for (const MessageLine &line : MessageLookup(database).List(state, user, limit))
        input.out << (isJson ? QString::fromUtf8(AsJson(line)) : AsLine(line)) << '\n';
    return 0;
}

int Retry(const CommandInput &input)
{
    const qint64 id = ServiceCommands::Number(input.arguments[0], u"ID"_s, 1, kMostId);
    Database database = CommandOptions::OpenDatabase(input.options);
    MessageLookup(database).Retry(id);
    return 0;
}

int Fail(const CommandInput &input)
{
    const qint64 id = ServiceCommands::Number(input.arguments[0], u"ID"_s, 1, kMostId);
    Database database = CommandOptions::OpenDatabase(input.options);
    MessageLookup(database).Fail(id);
    return 0;
}

int Restored(const CommandInput &input)
{
    Database database = CommandOptions::OpenDatabase(input.options);
    database.HoldForService();
    input.out << Tr("%1 messages are unsure now").arg(DeclareRestored(database)) << '\n';
    return 0;
}

int Status(const CommandInput &input)
{
    const std::chrono::minutes patience(ServiceCommands::Number(input.options, u"stuck-after"_s, 1, 100'000));
    Database database = CommandOptions::OpenDatabase(input.options);
    if (input.options.isSet(u"check"_s))
        database.Check();
    const StoreStatus status = ReadStatus(database, patience);
    for (std::size_t state = 0; state < status.counts.size(); ++state)
        input.out << u"%1 %2\n"_s.arg(WordOf(static_cast<MessageState>(state)), -12).arg(status.counts[state]);
    const auto tellAge = [&input](const QString &what, std::optional<std::chrono::milliseconds> age) {
        if (age)
            input.out << what.arg(std::chrono::duration_cast<std::chrono::seconds>(*age).count()) << '\n';
    };
    tellAge(Tr("oldest queued for %1 s"), status.oldestQueued);
    tellAge(Tr("oldest handed over without a report for %1 s"), status.oldestHandedOver);
    input.out << Tr("last report  %1").arg(status.lastReport ? Time(*status.lastReport) : Tr("none")) << '\n';
    const QList<AccountSums> sums = Audit(database);
    for (const AccountSums &account : sums) {
        if (!account.Agree())
            input.out << Tr("the balance of %1 is %2, but %3 credits - %4 accepted + %5 refunded is %6")
                             .arg(account.user)
                             .arg(account.balance)
                             .arg(account.credits)
                             .arg(account.accepted)
                             .arg(account.refunded)
                             .arg(account.credits - account.accepted + account.refunded)
                      << '\n';
    }
    const bool isSound = std::all_of(sums.begin(), sums.end(), [](const AccountSums &a) { return a.Agree(); });
    if (isSound)
        input.out << Tr("the balances add up") << '\n';
    if (status.takesNone)
        input.out << Tr("STUCK: messages wait, and the engine took none") << '\n';
    if (status.hearsNothing)
        input.out << Tr("STUCK: messages were handed over, and no report came") << '\n';
    return status.takesNone || status.hearsNothing || !isSound ? 1 : 0;
}

int Purge(const CommandInput &input)
{
    if (!input.options.isSet(u"older-than"_s))
        ServiceCommands::Refuse(Tr("A purge wants --older-than DAYS."));
    const auto days = static_cast<int>(ServiceCommands::Number(input.options, u"older-than"_s, 0, 36'500));
    Database database = CommandOptions::OpenDatabase(input.options);
    input.out << Tr("%1 messages blanked").arg(MessageLookup(database).Purge(days)) << '\n';
    return 0;
}

int CheckKannel(const CommandInput &input)
{
    QFile file(input.arguments[0]);
    if (!file.open(QIODevice::ReadOnly))
        ServiceCommands::GiveUp(Tr("Cannot read \"%1\": %2.").arg(file.fileName(), file.errorString()));
    const QStringList findings = KannelConfiguration::Findings(QString::fromUtf8(file.readAll()));
    for (const QString &finding : findings)
        input.out << finding << '\n';
    if (findings.isEmpty())
        input.out << Tr("All settings that guard against loss are there.") << '\n';
    return findings.isEmpty() ? 0 : 1;
}

} // namespace

QList<ServiceCommand> MessageCommands()
{
    const QCommandLineOption database = CommandOptions::Database();
    const QCommandLineOption state(u"state"_s, Tr("Only those in this state."), u"STATE"_s);
    const QCommandLineOption user(u"user"_s, Tr("Only those of this user."), u"USER"_s);
    const QCommandLineOption limit(u"limit"_s, Tr("So many at most."), u"N"_s, u"100"_s);
    const QCommandLineOption json(u"json"_s, Tr("A JSON object a line."));
    const QCommandLineOption stuckAfter(
        u"stuck-after"_s, Tr("How long messages may wait for the engine, and for a report."), u"MINUTES"_s, u"10"_s);
    const QCommandLineOption olderThan(u"older-than"_s, Tr("Only what last changed so long ago."), u"DAYS"_s);
    const QCommandLineOption check(u"check"_s, Tr("Read the whole database, and tell whether it is damaged."));
    const QString messages = u"messages"_s;
    const QString id = u"ID"_s;
    return {
        {{messages, u"retry"_s},
         {id},
         Tr("Queue a failed or unsure message again (an unsure one may arrive twice), or try a queued one at once."),
         {database},
         Retry},
        {{messages, u"fail"_s},
         {id},
         Tr("Give up a message that is queued or unsure, or of which no more is told."),
         {database},
         Fail},
        {{messages}, {}, Tr("Show messages, newest first."), {database, state, user, limit, json}, List},
        {{u"status"_s},
         {},
         Tr("Show how the messages stand; ends with 1 when they are stuck."),
         {database, stuckAfter, check},
         Status},
        {{u"restored"_s},
         {},
         Tr("After a copy was put in the database's place: what it has as queued may have gone out since."),
         {database},
         Restored},
        {{u"purge"_s},
         {},
         Tr("Blank text, name and number of messages that last changed long ago, but not of queued ones."),
         {database, olderThan},
         Purge},
        {{u"check-kannel"_s},
         {u"FILE"_s},
         Tr("Tell which settings that guard against loss are missing in a configuration of Kannel."),
         {},
         CheckKannel}};
}
