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
    bool ask(const QString &title, const QString &text) override
    {
        show(title, text);
        return answer;
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

    void withdrawQuestion() override { answer = false; }

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
};
