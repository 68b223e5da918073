// SPDX-License-Identifier: MIT
#include "messages/ListFiles.h"

#include "core/ErrorLog.h"
#include "core/FileWrite.h"
#include "core/RuntimeError.h"
#include "core/Settings.h"
#include "core/Text.h"

#include <QFile>

#include <cerrno>

namespace {

[[noreturn]] void fileError(const QFile &file)
{
    throw RuntimeError(RuntimeError::FileError, file.errorString(), QStringLiteral("Quorvane"), errno);
}

} // namespace

const QString &ListTable::at(qint32 index) const
{
    if (index < 0 || index >= Size)
        throw RuntimeError(RuntimeError::OutOfRange, QStringLiteral("Subscript out of range"));
    return entries[static_cast<size_t>(index)];
}

ListFiles::ListFiles(const Settings &settings, ErrorLog &errors)
    : m_settings(settings)
    , m_errors(errors)
{
}

QString ListFiles::path(const QString &fileName) const
{
    return m_settings.FileLoc + fileName;
}

void ListFiles::load(ListTable &table, const QString &fileName, const QString &AppMsg, Form form)
{
    m_errors.catching(AppMsg, [&] {
        table.top = -1;
        ++table.generation;
        QFile file(path(fileName));
        if (!file.exists()) {
            if (!file.open(QIODevice::WriteOnly))
                fileError(file);
            file.close();
        }
        if (!file.open(QIODevice::ReadOnly))
            fileError(file);
        const QByteArray bytes = file.readAll();
        file.close();
        // The empty line behind a last line end goes with the blank ones.
        for (const Text::Line &read : Text::splitLines(Text::fromWire(bytes))) {
            QString line = read.text;
            if (form == Form::Upper)
                line = Text::upper(line);
            const QString trimmed = Text::trimBlanks(line);
            if (trimmed.isEmpty())
                continue;
            if (table.top + 1 >= ListTable::Size)
                throw RuntimeError(RuntimeError::OutOfRange, QStringLiteral("Subscript out of range"));
            ++table.top;
            table.entries[static_cast<size_t>(table.top)] = form == Form::Trimmed ? trimmed : line;
        }
    });
}

void ListFiles::LoadServerMessages()
{
    load(m_serverMessages, servmsgFile, QStringLiteral("Error loading server messages"), Form::AsRead);
    nextMessage = 0;
}

void ListFiles::LoadHighPingMessages()
{
    load(m_highPingMessages, highpingFile, QStringLiteral("Error loading high ping messages"), Form::AsRead);
    nextHighPingMessage = 0;
}

void ListFiles::LoadBannedNames()
{
    load(m_bannedNames, bannedFile, QStringLiteral("Error loading banned names"), Form::AsRead);
    m_nameIndex.clear();
    for (qint32 i = 0; i <= m_bannedNames.top; ++i)
        m_nameIndex[Text::upper(Text::trimBlanks(m_bannedNames.at(i)))].append(i);
}

void ListFiles::LoadBannedIPs()
{
    load(m_bannedIPs, bannedIPFile, QStringLiteral("Error loading banned IPs"), Form::Trimmed);
    m_ipIndex.clear();
    for (qint32 i = 0; i <= m_bannedIPs.top; ++i)
        m_ipIndex[m_bannedIPs.at(i)].append(i);
}

void ListFiles::LoadBadNames()
{
    load(m_badNames, badnamesFile, QStringLiteral("Error loading bad names"), Form::Upper);
    std::vector<QString> words;
    words.reserve(static_cast<size_t>(m_badNames.top + 1));
    for (qint32 i = 0; i <= m_badNames.top; ++i)
        words.push_back(Text::trimBlanks(m_badNames.at(i)));
    m_badWords.build(words);
}

void ListFiles::LoadImmuneIPs()
{
    load(m_immuneIPs, immuneIPFile, QStringLiteral("Error loading Immune IPs"), Form::AsRead);
    m_immuneSet.clear();
    for (qint32 i = 0; i <= m_immuneIPs.top; ++i)
        m_immuneSet.insert(m_immuneIPs.at(i));
}

void ListFiles::LoadAll()
{
    LoadServerMessages();
    LoadHighPingMessages();
    LoadBannedNames();
    LoadBannedIPs();
    LoadBadNames();
    LoadImmuneIPs();
}

void ListFiles::AppendToFile(const QString &fileName, const QString &text)
{
    m_errors.catching(QStringLiteral("Error appending ") + text + QStringLiteral(" to ") + fileName, [&] {
        FileWrite::append(path(fileName), Text::toWire(text + QStringLiteral("\r\n")));
    });
}

void ListFiles::CopyListsToNewFolder()
{
    const std::pair<const ListTable *, const QString *> lists[] = {
        {&m_serverMessages, &servmsgFile}, {&m_bannedNames, &bannedFile}, {&m_badNames, &badnamesFile},
        {&m_bannedIPs, &bannedIPFile},     {&m_immuneIPs, &immuneIPFile},
    };
    for (const auto &[table, fileName] : lists) {
        for (qint32 i = 0; i <= table->top; ++i)
            AppendToFile(*fileName, table->at(i));
    }
}
