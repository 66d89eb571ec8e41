#pragma once

#include "app/ui/userprompt.h"

#include <functional>

// A user who answers as told, and writes down what was shown as "title|text".
class ScriptedPrompt : public UserPrompt
{
public:
    QStringList shown;
    QStringList reasons;              // of the warnings
    bool answer = false;              // to every question
    bool withdrawn = false;           // the last question
    QStringList picks;                // what the pickers return in turn, none left: cancel
    QStringList severalPicks;         // what a picker of several files returns
    QStringList pickers;              // "title|start|filter" of each picker
    std::function<void()> duringABox; // happens while a box is open

    void inform(const QString &title, const QString &text) override { show(title, text); }
    void warn(const QString &title, const QString &text, const QString &reason) override
    {
        reasons += reason;
        show(title, text);
    }
    bool askRevocably(const void *owner, const QString &title, const QString &text) override
    {
        m_owner = owner;
        const bool isYes = ask(title, text);
        m_owner = nullptr;
        return isYes;
    }
    bool ask(const QString &title, const QString &text) override
    {
        withdrawn = false;
        show(title, text);
        return answer && !withdrawn;
    }
    QString pickFolder(const QString &title, const QString &start) override
    {
        return pick(title, start, {});
    }
    QString pickFile(const QString &title, const QString &start, const QString &filter) override
    {
        return pick(title, start, filter);
    }
    QStringList pickFiles(const QString &title, const QString &start,
                          const QString &filter) override
    {
        pick(title, start, filter);
        return severalPicks;
    }
    QString pickFileToSave(const QString &title, const QString &start,
                           const QString &filter) override
    {
        return pick(title, start, filter);
    }

    void withdrawQuestion(const void *owner) override
    {
        if (owner == m_owner)
            withdrawn = true;
    }

private:
    void show(const QString &title, const QString &text)
    {
        shown += title + QLatin1Char('|') + text;
        if (duringABox)
            duringABox();
    }
    QString pick(const QString &title, const QString &start, const QString &filter)
    {
        pickers += title + QLatin1Char('|') + start + QLatin1Char('|') + filter;
        return picks.isEmpty() ? QString() : picks.takeFirst();
    }

    const void *m_owner = nullptr; // of the question that is open
};
