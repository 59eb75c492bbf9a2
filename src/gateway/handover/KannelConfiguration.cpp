#include "KannelConfiguration.h"

#include <QMap>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

/// The settings of one group. One that stands there twice has its last value, as in Kannel.
using Group = QMap<QString, QString>;

struct Configuration
{
    QList<Group> groups;
    QStringList included;

    [[nodiscard]] QList<Group> Named(const QString &name) const
    {
        QList<Group> named;
        std::copy_if(groups.begin(), groups.end(), std::back_inserter(named),
                     [&name](const Group &group) { return group.value(u"group"_s) == name; });
        return named;
    }
};

QString Unquoted(const QString &value)
{
    const bool isQuoted = value.size() >= 2 && value.startsWith(u'"') && value.endsWith(u'"');
    return isQuoted ? value.sliced(1, value.size() - 2) : value;
}

/// A blank line ends a group, "#" makes a line a comment, and "\" at the end of one takes the next line in.
Configuration Read(QStringView text)
{
    Configuration configuration;
    Group group;
    const auto endGroup = [&] {
        if (!group.isEmpty())
            configuration.groups.append(group);
        group.clear();
    };
    QString joined;
    for (const auto part : text.split(u'\n')) {
        joined += part.trimmed();
        if (joined.endsWith(u'\\') && !joined.endsWith(u"\\\\"_s)) {
            joined.chop(1);
            continue;
        }
        const QString line = std::exchange(joined, {});
        if (line.isEmpty()) {
            endGroup();
            continue;
        }
        const qsizetype equals = line.indexOf(u'=');
        if (line.startsWith(u'#') || equals < 0)
            continue;
        const QString name = line.first(equals).trimmed();
        const QString value = Unquoted(line.sliced(equals + 1).trimmed());
        if (name == "include"_L1)
            configuration.included.append(value);
        else
            group.insert(name, value);
    }
    endGroup();
    return configuration;
}

bool IsOn(const Group &group, const QString &name)
{
    static const QStringList off = {u"false"_s, u"no"_s, u"off"_s, u"0"_s};
    return group.contains(name) && !off.contains(group.value(name), Qt::CaseInsensitive);
}

/// As Kannel reads numbers, so also "0x02".
int NumberOf(const Group &group, const QString &name, int usual = 0)
{
    return group.contains(name) ? group.value(name).toInt(nullptr, 0) : usual;
}

bool IsLoopback(const QString &address)
{
    return address == "localhost"_L1 || address == "::1"_L1 || address.startsWith("127."_L1);
}

bool DeniesAll(const Group &group, const QString &prefix)
{
    const QStringList denied = group.value(prefix + "-deny-ip"_L1).split(u';');
    return std::any_of(denied.begin(), denied.end(), [](const QString &ip) { return ip.trimmed() == "*.*.*.*"_L1; });
}

QStringList Allowed(const Group &group, const QString &prefix)
{
    QStringList allowed = group.value(prefix + "-allow-ip"_L1).split(u';', Qt::SkipEmptyParts);
    std::transform(allowed.begin(), allowed.end(), allowed.begin(), [](const QString &ip) { return ip.trimmed(); });
    return allowed;
}

/// Whether the lists keep all but this machine out: all are denied, and only this machine is then let in.
bool AllowsThisMachineAlone(const Group &group, const QString &prefix)
{
    const QStringList allowed = Allowed(group, prefix);
    return DeniesAll(group, prefix) && std::all_of(allowed.begin(), allowed.end(), IsLoopback);
}

/// Whether the lists keep this machine out as well. Kannel compares with addresses, and so with no name.
bool DeniesThisMachine(const Group &group, const QString &prefix)
{
    const QStringList allowed = Allowed(group, prefix);
    return DeniesAll(group, prefix) && std::none_of(allowed.begin(), allowed.end(), [](const QString &ip) {
               return ip.startsWith("127."_L1) || ip == "*.*.*.*"_L1;
           });
}

bool IsBoundToThisMachine(const Group &group, const QString &setting)
{
    return IsLoopback(group.value(setting));
}

void CheckLog(const Group &group, const QString &name, QStringList &findings)
{
    if (group.contains(u"log-file"_s) && NumberOf(group, u"log-level"_s) < 2)
        findings += u"%1: log-level is below 2, so the log holds texts, whole numbers and passwords."_s.arg(name);
    if (group.contains(u"access-log"_s) && !group.contains(u"access-log-format"_s))
        findings += u"%1: access-log keeps the text and the number of every message."_s.arg(name);
}

void CheckStore(const Group &core, QStringList &findings)
{
    const QString type = core.value(u"store-type"_s);
    if (type.isEmpty())
        findings +=
            u"core: store-type is missing, so what Kannel has accepted is lost when it ends: set it to spool."_s;
    else if (type == "file"_L1)
        findings += u"core: store-type is file, which is written every %1 s (store-dump-freq), so what was accepted "
                    "since is lost in a crash: set it to spool."_s.arg(core.value(u"store-dump-freq"_s, u"10"_s));
    else if (type != "spool"_L1)
        findings += u"core: store-type is \"%1\", of which nothing is known here: set it to spool."_s.arg(type);
    if (core.value(u"store-location"_s).isEmpty())
        findings += u"core: store-location is missing: name the folder that keeps the accepted messages."_s;

    const QString reports = core.value(u"dlr-storage"_s, u"internal"_s);
    if (reports == "internal"_L1)
        findings += u"core: dlr-storage is internal, so a restart forgets which reports are awaited, and messages stay "
                    "\"handed-over\" for ever: set it to spool."_s;
    else if (reports == "spool"_L1 && core.value(u"dlr-spool"_s).isEmpty())
        findings += u"core: dlr-spool is missing: name the folder that keeps the awaited reports."_s;

    constexpr int kLargeQueue = 100'000;
    for (const QString &limit : {u"sms-outgoing-queue-limit"_s, u"maximum-queue-length"_s}) {
        if (const int most = NumberOf(core, limit, -1); most >= 0 && most < kLargeQueue)
            findings += u"core: %1 is below 100000, and what comes beyond it is thrown away."_s.arg(limit);
    }
    if (NumberOf(core, u"sms-resend-retry"_s, -1) >= 0)
        findings += u"core: sms-resend-retry gives messages up that the operator does not take for a while: "
                    "leave it out."_s;
}

void CheckCore(const Group &core, QStringList &findings)
{
    CheckStore(core, findings);
    if (core.value(u"admin-password"_s).isEmpty())
        findings += u"core: admin-password is missing, so anyone who reaches the admin port can stop Kannel."_s;
    if (!IsBoundToThisMachine(core, u"admin-interface"_s) && !AllowsThisMachineAlone(core, u"admin"_s))
        findings += u"core: the admin port is open to the network: set admin-interface to 127.0.0.1."_s;
    if (!IsBoundToThisMachine(core, u"smsbox-interface"_s) && !AllowsThisMachineAlone(core, u"box"_s))
        findings += u"core: the smsbox port is open to the network, where anyone can send: set smsbox-interface to "
                    "127.0.0.1."_s;
    if (DeniesThisMachine(core, u"box"_s))
        findings += u"core: box-deny-ip keeps smsbox out: set box-allow-ip to 127.0.0.1."_s;
    if (core.contains(u"wapbox-port"_s))
        findings += u"core: wapbox-port opens a port that nothing here needs: leave it out."_s;
    CheckLog(core, u"core"_s, findings);
}

void CheckSmsbox(const Group &smsbox, QStringList &findings)
{
    if (!IsBoundToThisMachine(smsbox, u"sendsms-interface"_s))
        findings += u"smsbox: the sendsms port is open to the network: set sendsms-interface to 127.0.0.1."_s;
    if (IsOn(smsbox, u"immediate-sendsms-reply"_s))
        findings += u"smsbox: immediate-sendsms-reply says \"accepted\" before the message is kept: leave it out."_s;
    constexpr qint64 kSecondsOfWeek = 7LL * 24 * 3600;
    const qint64 repeats = NumberOf(smsbox, u"http-request-retry"_s);
    const qint64 delay = NumberOf(smsbox, u"http-queue-delay"_s, 10);
    if (repeats * delay < kSecondsOfWeek)
        findings += u"smsbox: http-request-retry times http-queue-delay is less than a week, and a report is lost when "
                    "the gateway is away for longer: set http-request-retry to 1000000."_s;
    if (delay < 1 || delay > 60)
        findings += u"smsbox: http-queue-delay is not between 1 and 60 s, after which a report is brought again."_s;
    if (smsbox.contains(u"sendsms-chars"_s) && !smsbox.value(u"sendsms-chars"_s).contains(u'+'))
        findings += u"smsbox: sendsms-chars is without \"+\", so every message is refused."_s;
    CheckLog(smsbox, u"smsbox"_s, findings);
}

void CheckUser(const Group &user, QStringList &findings)
{
    const QString name = u"sendsms-user %1"_s.arg(user.value(u"username"_s));
    constexpr int kShortestPassword = 12;
    if (user.value(u"password"_s).size() < kShortestPassword)
        findings += u"%1: the password has less than 12 characters."_s.arg(name);
    if (!AllowsThisMachineAlone(user, u"user"_s))
        findings += u"%1: anyone who has the password can send: set user-deny-ip to \"*.*.*.*\" and user-allow-ip to "
                    "127.0.0.1."_s.arg(name);
    if (DeniesThisMachine(user, u"user"_s))
        findings += u"%1: user-deny-ip keeps the gateway out: set user-allow-ip to 127.0.0.1."_s.arg(name);
    if (user.value(u"max-messages"_s, u"1"_s) != "1"_L1)
        findings += u"%1: max-messages is not 1, so one message can cost several, or is dropped at 0."_s.arg(name);
    for (const QString &list : {u"white-list"_s, u"black-list"_s}) {
        if (user.contains(list))
            findings += u"%1: %2 makes Kannel refuse numbers that the gateway accepts."_s.arg(name, list);
    }
}

void CheckLine(const Group &line, QStringList &findings)
{
    const QString kind = line.value(u"smsc"_s);
    const QString name = u"smsc %1"_s.arg(line.value(u"smsc-id"_s, kind));
    if (kind == "fake"_L1)
        findings += u"%1: it plays an operator and delivers nothing."_s.arg(name);
    if (kind == "smpp"_L1 && !line.contains(u"system-type"_s))
        findings +=
            u"%1: system-type is missing, without which Kannel does not start: \"VMA\" suits most operators."_s.arg(
                name);
    constexpr int kUsualWindow = 10;
    const int window = NumberOf(line, u"max-pending-submits"_s);
    if (kind == "smpp"_L1 && (window < 1 || window > kUsualWindow))
        findings +=
            u"%1: max-pending-submits is not between 1 and 10; after a crash, as many messages as that may reach "
            "their phones twice, and 1 is the safest."_s.arg(name);
    // Unset is 1 for SMPP, whatever Kannel's guide says; 0 connects anew first, and then sends again as well.
    const int whenLate = NumberOf(line, u"wait-ack-expire"_s);
    if (whenLate == 1 || (kind == "smpp"_L1 && whenLate != 2))
        findings +=
            u"%1: wait-ack-expire is not 2, so a message whose answer is late is sent again: set it to 2."_s.arg(name);
    if (kind != "fake"_L1 && line.value(u"throughput"_s).toDouble() <= 0)
        findings +=
            u"%1: throughput is missing, and an operator may refuse what comes faster than was agreed."_s.arg(name);
}

} // namespace

QStringList KannelConfiguration::Findings(QStringView text)
{
    const Configuration configuration = Read(text);
    QStringList findings;
    const auto checkAll = [&](const QString &name, const QString &why, auto check) {
        const QList<Group> groups = configuration.Named(name);
        if (groups.isEmpty())
            findings += u"There is no group \"%1\": %2."_s.arg(name, why);
        for (const Group &group : groups)
            check(group, findings);
    };
    checkAll(u"core"_s, u"Kannel cannot start"_s, CheckCore);
    checkAll(u"smsbox"_s, u"nothing can be handed over"_s, CheckSmsbox);
    checkAll(u"sendsms-user"_s, u"the gateway needs one to log on"_s, CheckUser);
    checkAll(u"smsc"_s, u"no line leads to an operator"_s, CheckLine);
    for (const Group &group : configuration.groups) {
        for (auto setting = group.begin(); setting != group.end(); ++setting) {
            if (setting.value().startsWith("CHANGE-ME"_L1))
                findings += u"%1: %2 is still to be filled in."_s.arg(group.value(u"group"_s), setting.key());
        }
    }
    for (const QString &file : configuration.included)
        findings += u"\"%1\" is included and was not looked into."_s.arg(file);
    return findings;
}
