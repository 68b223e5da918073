// SPDX-License-Identifier: MIT
#include "core/SettingsStore.h"

#include "core/Clock.h"
#include "core/FileWrite.h"
#include "core/RuntimeError.h"
#include "core/Settings.h"
#include "core/Stats.h"
#include "core/Text.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLocale>
#include <QSettings>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <cerrno>
#include <utility>
#include <variant>

namespace {

using Field = std::variant<bool Settings::*, qint32 Settings::*, double Settings::*, QString Settings::*>;

struct Key
{
    const char *name;
    Field field;
};

// Load order.
const Key keys[] = {
    {"Warn", &Settings::Warn},
    {"WarnTxt", &Settings::WarnTxt},
    {"KickTK", &Settings::KickTK},
    {"TKLimit", &Settings::TKLimit},
    {"CheckInt", &Settings::CheckInt},
    {"Ban", &Settings::Ban},
    {"BanType", &Settings::BanType},
    {"BanFor", &Settings::BanFor},
    {"BanDuration", &Settings::BanDuration},
    {"NameCheck", &Settings::NameCheck},
    {"Host", &Settings::Host},
    {"Pwd", &Settings::Pwd},
    {"Port", &Settings::Port},
    {"Persona", &Settings::Persona},
    {"Voice", &Settings::Voice},
    {"intAnnouce", &Settings::intAnnouce},
    {"lngAnnounce", &Settings::lngAnnounce},
    {"BanTime", &Settings::BanTime},
    {"FileLoc", &Settings::FileLoc},
    {"SaveSettings", &Settings::SaveSettings},
    {"SaveLog", &Settings::SaveLog},
    {"LogBrief", &Settings::LogBrief},
    {"ForceKick", &Settings::ForceKick},
    {"KickBanned", &Settings::KickBanned},
    {"KickTeleFrag", &Settings::KickTeleFrag},
    {"KickPing", &Settings::KickPing},
    {"MaxPing", &Settings::MaxPing},
    {"PingPasses", &Settings::PingPasses},
    {"TellPlayers", &Settings::TellPlayers},
    {"LocalPort", &Settings::LocalPort},
    {"CommandDelay", &Settings::CommandDelay},
    {"QPort", &Settings::QPort},
    {"QPortMin", &Settings::QPortMin},
    {"QPortMax", &Settings::QPortMax},
    {"Rate", &Settings::Rate},
    {"RateMin", &Settings::RateMin},
    {"RateMax", &Settings::RateMax},
    {"SkipMap", &Settings::SkipMap},
    {"WinWidth", &Settings::WinWidth},
    {"WinHeight", &Settings::WinHeight},
    {"MsgRandom", &Settings::MsgRandom},
    {"SysTray", &Settings::SysTray},
    {"KickImpersonators", &Settings::KickImpersonators},
    {"StatusInterval", &Settings::StatusInterval},
    {"TellPause", &Settings::TellPause},
    {"WinState", &Settings::WinState},
    {"ServerOnly", &Settings::ServerOnly},
};

// Store order, behind SaveSettings and RunBefore.
const char *const storeOrder[] = {
    "Warn", "WarnTxt", "TKLimit", "KickTK", "CheckInt", "Ban", "BanType", "BanFor", "BanDuration",
    "NameCheck", "Host", "Pwd", "Port", "Persona", "Voice", "intAnnouce", "lngAnnounce", "BanTime",
    "FileLoc", "SaveLog", "LogBrief", "ForceKick", "KickBanned", "KickTeleFrag", "KickPing", "MaxPing",
    "PingPasses", "TellPlayers", "LocalPort", "CommandDelay", "QPort", "QPortMin", "QPortMax", "Rate",
    "RateMin", "RateMax", "SkipMap", "WinWidth", "WinHeight", "MsgRandom", "SysTray",
    "KickImpersonators", "StatusInterval", "TellPause", "WinState", "ServerOnly",
};

const Key &keyNamed(const char *name)
{
    for (const Key &key : keys) {
        if (qstrcmp(key.name, name) == 0)
            return key;
    }
    Q_UNREACHABLE();
}

QString boolText(bool value)
{
    return value ? QStringLiteral("True") : QStringLiteral("False");
}

bool toBool(const QString &text, bool fallback)
{
    const QString t = Text::trimBlanks(text);
    if (t.compare(u"True", Qt::CaseInsensitive) == 0)
        return true;
    if (t.compare(u"False", Qt::CaseInsensitive) == 0)
        return false;
    if (Text::isNumeric(t))
        return t.toDouble() != 0;
    return fallback;
}

qint32 toInt(const QString &text, qint32 fallback)
{
    try {
        return Text::toInt32(text);
    } catch (...) {
        return fallback;
    }
}

double toDouble(const QString &text, double fallback)
{
    return Text::isNumeric(text) ? Text::trimBlanks(text).toDouble() : fallback;
}

QString valueText(const Settings &settings, const Field &field)
{
    return std::visit(
        [&settings](auto member) -> QString {
            const auto &value = settings.*member;
            using T = std::decay_t<decltype(value)>;
            if constexpr (std::is_same_v<T, bool>)
                return boolText(value);
            else if constexpr (std::is_same_v<T, qint32>)
                return QString::number(value);
            else if constexpr (std::is_same_v<T, double>)
                return SettingsStore::doubleText(value);
            else
                return value;
        },
        field);
}

// The program's own folder of settings, created for its owner alone.
void createPrivateFolder(const QString &folder)
{
    if (QFileInfo::exists(folder))
        return;
    QDir().mkpath(QFileInfo(folder).absolutePath());
    QDir().mkdir(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

RuntimeError notWritten(const QString &path)
{
    return RuntimeError(RuntimeError::FileError, QStringLiteral("Could not write ") + path, QStringLiteral("Quorvane"), errno);
}

QMap<QString, QVariant> everyValue(QSettings &settings)
{
    QMap<QString, QVariant> values;
    for (const QString &key : settings.allKeys())
        values.insert(key, settings.value(key));
    return values;
}

} // namespace

QString IniSettingsBackend::filePath(const QString &appName)
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + QStringLiteral("/quorvane/")
        + appName + QStringLiteral(".ini");
}

IniSettingsBackend::IniSettingsBackend() = default;
IniSettingsBackend::~IniSettingsBackend() = default;

QSettings &IniSettingsBackend::file(const QString &appName)
{
    auto &slot = m_files[appName];
    if (!slot)
        slot = std::make_unique<QSettings>(filePath(appName), QSettings::IniFormat);
    return *slot;
}

QString IniSettingsBackend::read(const QString &appName, const QString &key, const QString &defaultValue)
{
    const QVariant value = file(appName).value(QStringLiteral("Settings/") + key);
    if (!value.isValid())
        return defaultValue;
    // A value edited by hand with a comma in it comes back as a list, its blanks lost
    // (a password "se,cret" would read "se, cret"): the line itself is read instead.
    if (value.metaType().id() == QMetaType::QStringList)
        return handWritten(filePath(appName), key);
    return value.toString();
}

QString IniSettingsBackend::handWritten(const QString &path, const QString &key)
{
    QFile ini(path);
    if (!ini.open(QIODevice::ReadOnly | QIODevice::Text))
        return {};
    bool inSection = false;
    while (!ini.atEnd()) {
        const QString line = QString::fromUtf8(ini.readLine()).trimmed();
        if (line.startsWith(u'['))
            inSection = line == u"[Settings]";
        else if (inSection && line.section(u'=', 0, 0).trimmed() == key)
            return line.section(u'=', 1).trimmed();
    }
    return {};
}

bool IniSettingsBackend::holds(const QString &appName)
{
    const QFileInfo stored(filePath(appName));
    return stored.isFile() && stored.isReadable();
}

void IniSettingsBackend::reread()
{
    m_files.clear();
}

void IniSettingsBackend::write(const QString &appName, const QString &key, const QString &value)
{
    m_unsaved[appName].append({key, value});
}

void IniSettingsBackend::flush()
{
    const auto unsaved = std::exchange(m_unsaved, {});
    for (const auto &[appName, values] : unsaved)
        save(appName, values);
}

void IniSettingsBackend::save(const QString &appName, const QList<std::pair<QString, QString>> &values)
{
    const QString path = filePath(appName);
    const QString folder = QFileInfo(path).absolutePath();
    createPrivateFolder(folder);
    // QSettings makes the text in a scratch copy, which is read back before its bytes replace
    // the file: Qt's own save hands over a cut-short file, reporting nothing, when the disk
    // refuses the end of it.
    QTemporaryDir scratch(folder + QStringLiteral("/.saving-XXXXXX"));
    if (!scratch.isValid())
        throw notWritten(path);
    const QString copyPath = scratch.filePath(QStringLiteral("copy.ini"));
    QSettings &stored = file(appName);
    stored.sync(); // reads again what changed on disk since
    QMap<QString, QVariant> expected;
    {
        QSettings copy(copyPath, QSettings::IniFormat);
        for (const QString &key : stored.allKeys())
            copy.setValue(key, stored.value(key));
        for (const auto &[key, value] : values)
            copy.setValue(QStringLiteral("Settings/") + key, value);
        copy.sync();
        if (copy.status() != QSettings::NoError)
            throw notWritten(path);
        expected = everyValue(copy);
    }
    // Under a second name QSettings has never seen, so that it reads the disk, not its cache.
    const QString checkPath = scratch.filePath(QStringLiteral("check.ini"));
    QFile copied(copyPath);
    if (!QFile::link(copyPath, checkPath) || !copied.open(QIODevice::ReadOnly))
        throw notWritten(path);
    QSettings check(checkPath, QSettings::IniFormat);
    if (check.status() != QSettings::NoError || everyValue(check) != expected)
        throw notWritten(path);
    const QByteArray bytes = copied.readAll();
    if (bytes.size() != copied.size())
        throw notWritten(path);
    // The file holds the remote console password: its owner's alone, whatever the umask
    // and whatever bits an older file had.
    FileWrite::replace(path, bytes, {QFile::ReadOwner | QFile::WriteOwner, false});
    m_files.erase(appName); // the next read starts from the file as it now stands
}

SettingsStore::SettingsStore(Settings &settings, Stats &stats, Clock &clock, std::unique_ptr<SettingsBackend> backend,
                             QString programDirectory)
    : m_settings(settings)
    , m_stats(stats)
    , m_clock(clock)
    , m_backend(std::move(backend))
    , m_programDirectory(std::move(programDirectory))
{
}

void SettingsStore::readSettings(const QString &strAppName)
{
    read(strAppName, m_settings);
}

bool SettingsStore::rereadSettings(const QString &strAppName, Settings &into)
{
    m_backend->reread();
    if (!m_backend->holds(strAppName))
        return false;
    read(strAppName, into);
    return true;
}

QStringList SettingsStore::changedKeys(const Settings &before, const Settings &after)
{
    QStringList changed;
    for (const Key &key : keys) {
        if (valueText(before, key.field) != valueText(after, key.field))
            changed.append(QString::fromLatin1(key.name));
    }
    return changed;
}

void SettingsStore::read(const QString &strAppName, Settings &into)
{
    const Settings defaults;
    for (const Key &key : keys) {
        const QString name = QString::fromLatin1(key.name);
        const QString text = m_backend->read(strAppName, name, valueText(defaults, key.field));
        std::visit(
            [&](auto member) {
                auto &target = into.*member;
                const auto &fallback = defaults.*member;
                using T = std::decay_t<decltype(target)>;
                if constexpr (std::is_same_v<T, bool>)
                    target = toBool(text, fallback);
                else if constexpr (std::is_same_v<T, qint32>)
                    target = toInt(text, fallback);
                else if constexpr (std::is_same_v<T, double>)
                    target = toDouble(text, fallback);
                else
                    target = text;
            },
            key.field);
    }
    if (Text::isBlank(into.FileLoc))
        into.FileLoc = programDirectory();
}

void SettingsStore::StoreSettings(bool bAll)
{
    m_backend->write(ownApp, QStringLiteral("SaveSettings"), boolText(m_settings.SaveSettings));
    m_backend->write(ownApp, QStringLiteral("RunBefore"), QStringLiteral("1"));
    if (bAll) {
        for (const char *name : storeOrder)
            m_backend->write(ownApp, QString::fromLatin1(name), valueText(m_settings, keyNamed(name).field));
    }
    m_backend->flush();
}

void SettingsStore::ResetStats()
{
    m_stats.banadds = 0;
    m_stats.bankicks = 0;
    m_stats.players = 0;
    m_stats.pingkicks = 0;
    m_stats.tkkicks = 0;
    m_stats.totalmaps = 0;
    m_stats.totalplayers = 0;
    m_stats.avgping = 0;
    m_stats.map.clear();
    m_stats.starttime = m_clock.timeOfDay();
    m_stats.startdate = m_clock.today();
}

qint32 SettingsStore::readRunBefore()
{
    return toInt(m_backend->read(ownApp, QStringLiteral("RunBefore"), QStringLiteral("0")), 0);
}

QString SettingsStore::readText(const QString &appName, const QString &key, const QString &defaultValue)
{
    return m_backend->read(appName, key, defaultValue);
}

QString SettingsStore::programDirectory() const
{
    if (!m_programDirectory.isEmpty())
        return m_programDirectory;
    const QString own = QCoreApplication::applicationDirPath();
    if (!own.isEmpty() && QFileInfo(own).isWritable())
        return QDir::toNativeSeparators(own) + QDir::separator();
    const QString data = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + QStringLiteral("/quorvane");
    QDir().mkpath(data);
    return QDir::toNativeSeparators(data) + QDir::separator();
}

QString SettingsStore::doubleText(double value)
{
    // Plain decimal, never an exponent: "1e-05" would not read back as a number.
    return QString::number(value, 'f', QLocale::FloatingPointShortest);
}
