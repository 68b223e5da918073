// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QStringList>
#include <QString>

#include <map>
#include <memory>
#include <utility>

class QSettings;

struct Settings;
struct Stats;
class Clock;

// Where the settings live: text values addressed by application name, section
// "Settings" and key.
class SettingsBackend
{
public:
    virtual ~SettingsBackend() = default;
    virtual QString read(const QString &appName, const QString &key, const QString &defaultValue) = 0;
    virtual void write(const QString &appName, const QString &key, const QString &value) = 0;
    // Raises RuntimeError when what was written did not reach the store.
    virtual void flush() {}
    // Whether the store holds anything under appName that can be read.
    virtual bool holds(const QString &) { return true; }
    // Forgets what was read, so that the next read sees the store as it now stands.
    virtual void reread() {}
};

// The per-user store: an INI file <config dir>/quorvane/<application name>.ini,
// section [Settings]. The config dir follows XDG_CONFIG_HOME. Writes are kept until
// flush(), which replaces the file whole, checked, with mode 0600 (the folder, when it
// is created, 0700); other keys and sections in the file stay.
class IniSettingsBackend final : public SettingsBackend
{
public:
    IniSettingsBackend();
    ~IniSettingsBackend() override;
    static QString filePath(const QString &appName);
    QString read(const QString &appName, const QString &key, const QString &defaultValue) override;
    void write(const QString &appName, const QString &key, const QString &value) override;
    void flush() override;
    bool holds(const QString &appName) override;
    void reread() override;

private:
    QSettings &file(const QString &appName);
    void save(const QString &appName, const QList<std::pair<QString, QString>> &values);
    static QString handWritten(const QString &path, const QString &key);
    std::map<QString, std::unique_ptr<QSettings>> m_files; // for reading only
    std::map<QString, QList<std::pair<QString, QString>>> m_unsaved;
};

// Moves the settings block to and from the store. Values that cannot be turned into
// their type give the key's default; nothing here stops the program.
class SettingsStore
{
public:
    static inline const QString ownApp = QStringLiteral("quorvane12");
    static inline const QString previousApp = QStringLiteral("quorvane");

    // `programDirectory`: the folder programDirectory() answers; empty for the program's own.
    SettingsStore(Settings &settings, Stats &stats, Clock &clock,
                  std::unique_ptr<SettingsBackend> backend = std::make_unique<IniSettingsBackend>(),
                  QString programDirectory = QString());

    // Reads every key under strAppName, then settles FileLoc. The caller resets the
    // statistics and loads the lists.
    void readSettings(const QString &strAppName);
    // Reads every key under strAppName as the store now stands into `into`, FileLoc settled as
    // at load; false, and `into` as it was, when the store holds nothing to read.
    bool rereadSettings(const QString &strAppName, Settings &into);
    // The keys whose values differ between the two blocks, in load order.
    static QStringList changedKeys(const Settings &before, const Settings &after);
    // Raises RuntimeError when the store could not be written.
    void StoreSettings(bool bAll);
    void ResetStats();

    qint32 readRunBefore();
    QString readText(const QString &appName, const QString &key, const QString &defaultValue);

    // The program's own folder with its separator, or the per-user data folder when the
    // program's folder cannot be written (an installed binary).
    QString programDirectory() const;

    static QString doubleText(double value);

private:
    void read(const QString &strAppName, Settings &into);

    Settings &m_settings;
    Stats &m_stats;
    Clock &m_clock;
    std::unique_ptr<SettingsBackend> m_backend;
    QString m_programDirectory;
};
