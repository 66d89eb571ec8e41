#pragma once

#include "MDF4Conversion/conversionglobal.h"
#include "app/ui/runningwork.h"

#include <QDialog>
#include <QElapsedTimer>
#include <QTimer>

#include <memory>
#include <vector>

class OutputNames;
class UserPrompt;
class WidgetConverterBase;
struct ConversionJob;
struct PlannedConversion;

namespace Ui {
class DialogConverter_UI;
}

// Converts one batch of raw logs, a conversion for each pair of file and format, one after the
// other or all at once.
class DialogConverter : public QDialog, public RunningWork
{
    Q_OBJECT

public:
    DialogConverter(const QStringList &files, const QString &outputDirectory, bool sequential,
                    ConversionGlobal::OutputFormatFlags formats, UserPrompt &prompt,
                    QWidget *parent = nullptr);
    // Ends what runs.
    ~DialogConverter() override;

    // Shows a dialog that starts at once and deletes itself when it is closed.
    static DialogConverter *open(const QStringList &files, const QString &outputDirectory,
                                 ConversionGlobal::OutputFormatFlags formats, UserPrompt &prompt,
                                 QWidget *parent);

    void start();

    [[nodiscard]] QString runningWork() const override;

public slots:
    // Asks first as long as conversions run that haven't been cancelled.
    void reject() override;

private slots:
    void onPollTimerTriggered();
    void on_comboBoxFiles_currentIndexChanged(int index);
    void on_pushButtonOk_clicked();
    void on_pushButtonCancel_clicked();
    void on_pushButtonOpenFolder_clicked();
    void on_pushButtonCopyMessages_clicked();
    void on_DialogConverter_UI_rejected();

private:
    void addConversion(const PlannedConversion &conversion, const ConversionJob &job);
    void startConversion(int index);
    void refreshFigures(bool hasEnded);
    void cancelAll();
    [[nodiscard]] bool isToEnd();
    [[nodiscard]] bool showErrors();
    void finish();
    [[nodiscard]] bool advance();
    [[nodiscard]] int count() const { return int(m_widgets.size()); }

    const std::unique_ptr<Ui::DialogConverter_UI> m_ui;
    UserPrompt &m_prompt;
    const QString m_outputDirectory;
    const bool m_sequential;
    std::vector<WidgetConverterBase *> m_widgets; // children of the form
    QTimer m_pollTimer{this};
    QElapsedTimer m_clock;
    int m_current = 0;        // runs, when sequential
    bool m_isRunning = false; // from the start until all have ended or the dialog is rejected
    bool m_isCancelled = false;
    bool m_isAsking = false;
};
