#pragma once

#include "app/state/appcontroller.h"
#include "app/ui/settingsstore.h"
#include "can/views/logger_can_view.h"
#include "link/liveobjects.h"
#include "link/logger_data_handler_class.h"
#include "tests/app/scriptedprompt.h"

#include <QAbstractItemView>
#include <QFile>
#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

namespace signaltable {

// Columns of tableView_dbc.
enum Column { Record, Live, Name, Value, Unit, Multiplicator, Offset };

} // namespace signaltable

// The page of CAN-2 on a real handler with a scripted user, and what its tests look at.
class CanPageBench
{
public:
    static constexpr int number = 2;

    CanPageBench()
    {
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, folder.path());
        SettingsStore().clear();
    }

    // Before this call the configuration and the settings can be written.
    Logger_CAN_View &page()
    {
        if (!m_page) {
            m_page = std::make_unique<Logger_CAN_View>(
                &controller, QStringLiteral("Logger_CAN_View_2"), QStringLiteral("CAN-2"), number,
                &handler, prompt);
            m_page->registerToController();
            m_page->resize(1000, 760);
        }
        return *m_page;
    }
    // Keys reach shortcuts in an active window only.
    void showActive()
    {
        page().show();
        page().activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&page()));
    }
    void closePage() { m_page.reset(); }
    void setState(AppSta_t state) { page().setAppState(state); }

    template <class Widget>
    Widget *find(const char *name)
    {
        return page().findChild<Widget *>(QLatin1String(name));
    }
    QPushButton *button(const char *name) { return find<QPushButton>(name); }
    QString label(const char *name) { return find<QLabel>(name)->text(); }
    QAbstractItemModel *rows(const char *table) { return find<QAbstractItemView>(table)->model(); }
    QString cell(const char *table, int row, int column)
    {
        return rows(table)->index(row, column).data().toString();
    }

    const TerminalCanCfg &channel() const { return handler.terminal().can.at(number); }
    QStringList signalNames() const
    {
        QStringList names;
        for (const StreamingClass_DBC_Signal *signal : channel().dbc_signals)
            names += signal->name;
        return names;
    }

    // Makes a channel whose signals are bytes of the message 0x100, all recorded and live.
    void writeSignals(const QStringList &names)
    {
        TerminalCanCfg edited;
        for (int i = 0; i < names.size(); ++i) {
            StreamingClass_DBC_Signal &signal = edited.dbc_signals.add();
            signal.name = names.at(i);
            signal.msg_id = 0x100;
            signal.dlc = 8;
            signal.start_bit = quint16(8 * i);
            signal.bit_length = 8;
            signal.little_endian = 1;
            signal.factor = 1;
            signal.selection_flags =
                StreamingClass_DBC_Signal::recordFlag | StreamingClass_DBC_Signal::liveFlag;
        }
        QVERIFY(handler.writeCan(number, edited));
    }

    // As the handler delivers it.
    void receive(quint32 id, const char *hex, quint32 timestamp_us = 0, int can_nr = number)
    {
        CAN_Msg_Class message;
        message.id = id;
        message.timestamp_us = timestamp_us;
        message.data = QByteArray::fromHex(hex);
        emit handler.signal_can_msg_list(can_nr, {&message});
    }

    QString writeFile(const char *name, const QByteArray &text) const
    {
        const QString path = folder.filePath(QLatin1String(name));
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size())
            qFatal("%s can't be written", qPrintable(path));
        return path;
    }

    QTemporaryDir folder;
    AppController controller;
    Logger_Data_Handler_Class handler{&controller};
    ScriptedPrompt prompt;

private:
    std::unique_ptr<Logger_CAN_View> m_page;
};
