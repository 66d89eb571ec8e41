#pragma once

#include "app/ui/columntablemodel.h"
#include "can/loadedsignals.h"
#include "config/streamingclass_dbc_signal.h"

#include <QColor>
#include <QVector>

#include <vector>

// DBC signals as a table: those of a file to choose from, or those of a channel. Multiplexors are
// hidden. The records belong to somebody else, who hands over a new list before the old ones go
// away. Lives on the GUI thread.
class Model_DBC_Signals : public ColumnTableModel<StreamingClass_DBC_Signal>
{
    Q_OBJECT

public:
    enum class Layout { SelectionDialog, CanView };
    enum class Field {
        Record,
        Live,
        Name,
        Value,
        Unit,
        Multiplicator,
        Offset,
        Id,
        Description,
    };

    // What sorting compares: numbers as numbers.
    static constexpr int sortRole = Qt::UserRole;

    // Row colours of signals that the channel has already.
    static QColor loadedColour() { return {177, 255, 136}; }
    static QColor loadedDifferentlyColour() { return {255, 184, 64}; }
    // What the colours say.
    static QString loadedText() { return QStringLiteral("Signal already loaded."); }
    static QString loadedDifferentlyText()
    {
        return QStringLiteral("Signal already loaded, but with different parameters.");
    }

    Model_DBC_Signals(const QList<StreamingClass_DBC_Signal *> &signalList, Layout layout,
                      QObject *parent = nullptr);

    // The rows stay as they are, with what is selected in them, if these are the same signals.
    void setSignals(const QList<StreamingClass_DBC_Signal *> &signalList);
    // The signals that a channel has already; they colour the rows. The list is copied.
    void setChannelSignals(const QList<StreamingClass_DBC_Signal *> &channelSignals);

    // The record of a row that exists.
    [[nodiscard]] StreamingClass_DBC_Signal *signalAt(int row) const { return m_rows.at(row); }
    // -1 if the layout lacks it.
    [[nodiscard]] int columnOf(Field field) const;

    // Live values have changed. Nothing but their column is drawn anew.
    void valuesChanged();

signals:
    // The user has edited a signal in the CAN view; with true the logger has to know.
    void dbcModelChanged(bool transferCmd);

protected:
    [[nodiscard]] int numberOfRows() const override { return m_rows.size(); }
    [[nodiscard]] StreamingClass_DBC_Signal &rowAt(int row) const override
    {
        return *m_rows.at(row);
    }
    [[nodiscard]] QVariant otherData(int row, int column, int role) const override;
    void edited(int row, int column) override;

private:
    [[nodiscard]] QVariant background(int row) const;
    [[nodiscard]] QString loadedState(int row) const;

    const Layout m_layout;
    const std::vector<Field> m_fields; // of the columns
    QVector<StreamingClass_DBC_Signal *> m_rows;
    QVector<can::SignalKey> m_keys; // of the rows, valid when the records are gone
    can::LoadedSignals m_loaded;
};
