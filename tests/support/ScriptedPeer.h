// SPDX-FileCopyrightText: 2026 The ZepGUI developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "PseudoTerminal.h"

#include <QMap>
#include <QStringList>

/// A device that says exactly what a test tells it to: each request line has its answer lines, or none. Unlike the
/// simulator it knows no grammar, so it can be wrong, late or silent on purpose.
class ScriptedPeer : public QObject
{
    Q_OBJECT

public:
    explicit ScriptedPeer(QObject *parent = nullptr);

    [[nodiscard]] QString path() const { return m_terminal.path(); }
    /// Answers \a request, a whole line without its end, with \a lines; "AT+WORD=*" stands for all requests of that
    /// word that have no answer of their own. A request that nobody set is not answered.
    void answer(const QString &request, const QStringList &lines);
    /// Says \a line, with a line end, of its own accord.
    void say(const QByteArray &line);
    /// What was received so far, whole lines, in order.
    [[nodiscard]] QStringList requests() const { return m_requests; }
    void forgetRequests() { m_requests.clear(); }
    void hangUp() { m_terminal.close(); }
    /// A new terminal, with another path().
    void plugAgain();

Q_SIGNALS:
    void requested(const QString &request);

private:
    void onReceived(const QByteArray &data);

    PseudoTerminal m_terminal;
    QByteArray m_incoming;
    QMap<QString, QStringList> m_answers;
    QStringList m_requests;
};
