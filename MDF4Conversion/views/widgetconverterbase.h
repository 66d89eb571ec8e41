#pragma once

#include "MDF4Conversion/conversionbatch.h"
#include "MDF4Conversion/conversionstate.h"
#include "MDF4Conversion/messagelimits.h"

#include <QElapsedTimer>
#include <QWidget>

#include <functional>
#include <map>
#include <memory>

namespace Ui {
class WidgetConverterBase;
}

class QTreeWidgetItem;

// One conversion as the user sees it: messages, a tree of counts, progress and figures. How it runs
// is up to the derived class. Texts of messages are rich text: who puts in what comes from a file
// or a process escapes it.
class WidgetConverterBase : public QWidget
{
    Q_OBJECT

public:
    // Groups, each with its rows: name and count.
    using Tree = std::map<QString, std::map<QString, QString>>;

    // What heads the tree.
    struct TreeTexts
    {
        QString title;
        QString nameColumn;
        QString toolTip;
    };

    WidgetConverterBase(const PlannedConversion &conversion, const TreeTexts &texts,
                        QWidget *parent = nullptr);
    ~WidgetConverterBase() override;

    virtual void start() = 0;
    virtual void cancel() = 0;
    // It no longer runs, or never will.
    [[nodiscard]] virtual bool isFinished() const = 0;
    virtual void poll() = 0;
    virtual void disconnectWarnings() = 0;
    virtual void disconnectStatus() = 0;
    // One of conversionstate, or what another program wrote.
    [[nodiscard]] virtual quint8 state() const = 0;

    [[nodiscard]] const PlannedConversion &conversion() const { return m_conversion; }
    // Bytes of the input.
    [[nodiscard]] double inputSize() const { return m_inputSize; }
    // 0 to 1; what has ended by itself counts as done.
    [[nodiscard]] double shareDone() const;
    // All messages as plain text.
    [[nodiscard]] QString messages() const;
    // Shows what has changed with time.
    void refreshFigures();
    // The batch has been cancelled: what hasn't started never will.
    void showCancelled();

public slots:
    void appendColoredLineBold(QString boldTxt, QString txtToAppend, QString colorHtml);
    void appendColoredLine(QString txtToAppend, QString colorHtml);
    void appendNfoLine(QString txtToAppend);
    void appendWarnLine(QString txtToAppend);
    void appendErrLine(QString txtToAppend);
    void updateTree(std::map<QString, std::map<QString, QString>> treeData, bool expandAll);
    void updateTree(std::map<QString, std::map<QString, QString>> treeData);
    void updateProgress(uint progress);

protected:
    // The figures count from here.
    void startClock() { m_clock.start(); }
    void showOutputFile(const QString &path);
    // Lines that are appended by the function are laid out together, which is much faster.
    void appendTogether(const std::function<void()> &append);
    [[nodiscard]] int errorCount() const { return m_limits.count(MessageLimits::Kind::Error); }
    // What the tree tells of a row beside its count.
    [[nodiscard]] virtual QString rowStatus(const QString &count) const = 0;

private:
    struct LineKind;

    bool appendLimited(const LineKind &kind, const QString &bold, const QString &text,
                       const QString &color);
    void appendHtml(const QString &bold, const QString &text, const QString &color);
    void updateGroup(QTreeWidgetItem *group, const std::map<QString, QString> &rows);

    static const LineKind boldLine;
    static const LineKind plainLine;
    static const LineKind statusLine;
    static const LineKind warningLine;
    static const LineKind errorLine;

    const std::unique_ptr<Ui::WidgetConverterBase> m_ui;
    const PlannedConversion m_conversion;
    const double m_inputSize;
    MessageLimits m_limits;
    QElapsedTimer m_clock;
    double m_elapsed_s = 0;    // stands still once the conversion has finished
    bool m_isExpanded = false; // the tree, once; then the user closes what he likes
};
