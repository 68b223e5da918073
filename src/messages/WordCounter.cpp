// SPDX-License-Identifier: MIT
#include "messages/WordCounter.h"

#include <algorithm>

WordCounter::WordCounter()
    : m_nodes(1)
{
}

qint32 WordCounter::child(qint32 node, char16_t c) const
{
    const auto &next = m_nodes[static_cast<size_t>(node)].next;
    const auto it = std::lower_bound(next.begin(), next.end(), c, [](const auto &edge, char16_t v) { return edge.first < v; });
    return it != next.end() && it->first == c ? it->second : -1;
}

qint32 WordCounter::step(qint32 node, char16_t c) const
{
    for (;;) {
        const qint32 to = child(node, c);
        if (to >= 0)
            return to;
        if (node == 0)
            return 0;
        node = m_nodes[static_cast<size_t>(node)].fail;
    }
}

void WordCounter::build(const std::vector<QString> &words)
{
    m_nodes.assign(1, Node{});
    for (const QString &word : words) {
        if (word.isEmpty())
            continue;
        qint32 node = 0;
        for (const QChar ch : word) {
            const char16_t c = ch.unicode();
            qint32 to = child(node, c);
            if (to < 0) {
                to = static_cast<qint32>(m_nodes.size());
                auto &next = m_nodes[static_cast<size_t>(node)].next;
                next.insert(std::lower_bound(next.begin(), next.end(), std::make_pair(c, qint32(0))), {c, to});
                m_nodes.emplace_back();
            }
            node = to;
        }
        ++m_nodes[static_cast<size_t>(node)].ends;
    }
    // Breadth first, so that a node's fallback is complete before the node itself.
    std::vector<qint32> order{0};
    for (size_t at = 0; at < order.size(); ++at) {
        const qint32 node = order[at];
        for (const auto &[c, to] : m_nodes[static_cast<size_t>(node)].next) {
            const qint32 fail = node == 0 ? 0 : step(m_nodes[static_cast<size_t>(node)].fail, c);
            m_nodes[static_cast<size_t>(to)].fail = fail;
            m_nodes[static_cast<size_t>(to)].ends += m_nodes[static_cast<size_t>(fail)].ends;
            order.push_back(to);
        }
    }
}

qint64 WordCounter::count(QStringView text) const
{
    qint64 total = 0;
    qint32 node = 0;
    for (const QChar ch : text) {
        node = step(node, ch.unicode());
        total += m_nodes[static_cast<size_t>(node)].ends;
    }
    return total;
}
