// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringView>

#include <utility>
#include <vector>

// Counts the occurrences of a set of words in a text: every occurrence of every word,
// overlapping ones too, and a word listed twice counts twice. It is built once per load
// of a list, so that a name costs one pass instead of one pass per word.
class WordCounter
{
public:
    WordCounter();

    // Empty words are left out; they occur nowhere.
    void build(const std::vector<QString> &words);
    qint64 count(QStringView text) const;

private:
    struct Node
    {
        std::vector<std::pair<char16_t, qint32>> next; // sorted by character
        qint32 fail = 0;
        qint64 ends = 0; // words ending here, and in every shorter suffix that is a word
    };

    qint32 child(qint32 node, char16_t c) const;
    qint32 step(qint32 node, char16_t c) const;

    std::vector<Node> m_nodes;
};
