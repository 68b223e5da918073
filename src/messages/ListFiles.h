// SPDX-License-Identifier: MIT
#pragma once

#include "messages/WordCounter.h"

#include <QHash>
#include <QList>
#include <QSet>
#include <QString>

#include <array>

class ErrorLog;
struct Settings;

// One list in memory: an entry per non-blank line of its file, at indexes 0 to top
// (-1 when the file is empty). Slots above top keep what an earlier load left there.
struct ListTable
{
    static constexpr qint32 Size = 2048;

    std::array<QString, Size> entries;
    qint32 top = -1;
    // Moves on at every load, so that a walk can tell that a ban reloaded the table under it.
    quint32 generation = 0;

    // Raises RuntimeError::OutOfRange outside 0..2047.
    const QString &at(qint32 index) const;
};

// The operator's six lists, read from their files in FileLoc into fixed tables that the
// policies and the announcer work on; the files are only read by the loaders and only
// grown by AppendToFile. Files are one byte a character (Latin-1) both ways. Every
// failure, a 2049th entry among them, is fatal and reported with the loader's words.
class ListFiles
{
public:
    static inline const QString servmsgFile = QStringLiteral("servmsg.txt");
    static inline const QString highpingFile = QStringLiteral("highping.txt");
    static inline const QString bannedFile = QStringLiteral("banned.txt");
    static inline const QString bannedIPFile = QStringLiteral("bannedIP.txt");
    static inline const QString badnamesFile = QStringLiteral("badnames.txt");
    static inline const QString immuneIPFile = QStringLiteral("immuneIP.txt");

    ListFiles(const Settings &settings, ErrorLog &errors);

    void LoadServerMessages();   // also sets nextMessage to 0
    void LoadHighPingMessages(); // also sets nextHighPingMessage to 0
    void LoadBannedNames();
    void LoadBannedIPs();
    void LoadBadNames();
    void LoadImmuneIPs();
    // All six, in the order of the settings load.
    void LoadAll();

    // One line (text and CR LF) behind FileLoc + fileName; the file is created when missing.
    void AppendToFile(const QString &fileName, const QString &text);
    // The tables, in their table form, appended to the files of the present FileLoc
    // (all but highping.txt).
    void CopyListsToNewFolder();

    const ListTable &serverMessages() const { return m_serverMessages; }
    const ListTable &highPingMessages() const { return m_highPingMessages; }
    const ListTable &bannedNames() const { return m_bannedNames; }
    const ListTable &bannedIPs() const { return m_bannedIPs; }
    const ListTable &badNames() const { return m_badNames; }
    const ListTable &immuneIPs() const { return m_immuneIPs; }
    qint32 serverMessageTop() const { return m_serverMessages.top; }
    qint32 highPingMessageTop() const { return m_highPingMessages.top; }
    qint32 bannedNameTop() const { return m_bannedNames.top; }
    qint32 bannedIPTop() const { return m_bannedIPs.top; }
    qint32 badNameTop() const { return m_badNames.top; }
    qint32 immuneIPTop() const { return m_immuneIPs.top; }

    // The cursors of the two message tables: the announcer's and the high-ping kicks'.
    qint32 nextMessage = 0;
    qint32 nextHighPingMessage = 0;

    // Indexes beside the tables, rebuilt at each load, in ascending order of index:
    // banned IP entries whose trimmed form is `address`; banned names whose trimmed
    // upper case is `upperName`.
    QList<qint32> bannedIPsEqualTo(const QString &address) const { return m_ipIndex.value(address); }
    QList<qint32> bannedNamesEqualTo(const QString &upperName) const { return m_nameIndex.value(upperName); }
    // Whether `ip` stands in the immune table exactly as stored.
    bool immune(const QString &ip) const { return m_immuneSet.contains(ip); }
    // Occurrences of every bad word (trimmed) in `upperName`, overlapping ones included.
    qint64 badWordHits(const QString &upperName) const { return m_badWords.count(upperName); }

private:
    enum class Form { AsRead, Trimmed, Upper };
    void load(ListTable &table, const QString &fileName, const QString &AppMsg, Form form);
    QString path(const QString &fileName) const;

    const Settings &m_settings;
    ErrorLog &m_errors;
    ListTable m_serverMessages;
    ListTable m_highPingMessages;
    ListTable m_bannedNames;
    ListTable m_bannedIPs;
    ListTable m_badNames;
    ListTable m_immuneIPs;
    QHash<QString, QList<qint32>> m_ipIndex;
    QHash<QString, QList<qint32>> m_nameIndex;
    QSet<QString> m_immuneSet;
    WordCounter m_badWords;
};
